#include "Platform/Linux/BoundedTools.h"

#include "Platform/Descriptor.h"
#include "Platform/Linux/DescriptorLimit.h"
#include "Platform/Scheduler.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace morvane {

namespace {

constexpr Seconds limit(3);
constexpr qsizetype mostOutput = qsizetype{64} * 1024;

/// Strings as system calls take them.
class TextArray {
public:
    explicit TextArray(const QStringList &texts) {
        for (const QString &text : texts) {
            m_texts.push_back(text.toLocal8Bit());
        }
        for (QByteArray &text : m_texts) {
            m_pointers.push_back(text.data());
        }
        m_pointers.push_back(nullptr);
    }

    char *const *data() const { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_texts;
    std::vector<char *> m_pointers;
};

/// Starts the program as the leader of a session, writing to `output`. 0 when it can't be started.
pid_t start(const Tools::Command &command, int output) {
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(command.environment);
    const TextArray arguments(QStringList(command.program) + command.arguments);
    const TextArray variables(environment.toStringList());

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t set;
    sigemptyset(&set);
    posix_spawnattr_setsigmask(&attributes, &set);
    sigfillset(&set);
    posix_spawnattr_setsigdefault(&attributes, &set);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t id = 0;
    const int failure = ::posix_spawn(&id, arguments.data()[0], &files, &attributes,
                                      arguments.data(), variables.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (failure != 0) {
        return 0;
    }
    restoreDescriptorLimit(id); // posix_spawn can't set limits
    return id;
}

} // namespace

/// A program that has been started; deletes itself when the program has ended.
class BoundedTools::Child : public QObject {
public:
    Child(pid_t id, Descriptor output, Descriptor process, Scheduler &scheduler, Finished finished,
          QObject *parent)
        : QObject(parent), m_id(id), m_output(std::move(output)), m_process(std::move(process)),
          m_outputNotifier(m_output.number(), QSocketNotifier::Read),
          m_endNotifier(m_process.number(), QSocketNotifier::Read), m_finished(std::move(finished)),
          m_limit(scheduler.after(limit, [this] { giveUp(); })) {
        connect(&m_outputNotifier, &QSocketNotifier::activated, this, &Child::read);
        connect(&m_endNotifier, &QSocketNotifier::activated, this, &Child::reap);
    }

    ~Child() override {
        if (!m_isReaped) {
            endGroup();
            ::waitpid(m_id, nullptr, WNOHANG);
        }
    }

private:
    /// Only before the program is reaped: until then no other process can get its number.
    void endGroup() const { ::kill(-m_id, SIGKILL); }

    /// Reads one piece of output; false when there is none at present, or no more to come.
    bool read() {
        std::array<char, 16384> piece;
        const ssize_t length = ::read(m_output.number(), piece.data(), piece.size());
        if (length > 0) {
            m_text.append(piece.data(), std::min<qsizetype>(length, mostOutput - m_text.size()));
        } else if (length == 0) {
            m_outputNotifier.setEnabled(false);
        }
        return length > 0;
    }

    /// The caller gets its answer even if the program can't be killed.
    void giveUp() {
        endGroup();
        m_outputNotifier.setEnabled(false);
        answer(std::nullopt);
    }

    void reap() {
        endGroup();
        while (m_finished && m_text.size() < mostOutput && read()) {
        }
        int status = 0;
        ::waitpid(m_id, &status, 0);
        m_isReaped = true;
        m_outputNotifier.setEnabled(false);
        m_endNotifier.setEnabled(false);
        deleteLater();
        const bool succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
        answer(succeeded ? std::optional(m_text) : std::nullopt);
    }

    void answer(const std::optional<QByteArray> &output) {
        m_limit.cancel();
        if (const auto finished = std::exchange(m_finished, nullptr)) {
            finished(output);
        }
    }

    const pid_t m_id;
    Descriptor m_output;
    Descriptor m_process;
    QSocketNotifier m_outputNotifier;
    QSocketNotifier m_endNotifier;
    QByteArray m_text;
    Finished m_finished; ///< empty once it has been called
    Task m_limit;
    bool m_isReaped = false;
};

void BoundedTools::run(const Command &command, Finished finished) {
    std::array<int, 2> ends{-1, -1};
    // Only our end is non-blocking: programs don't expect that of theirs.
    const bool hasPipe =
        ::pipe2(ends.data(), O_CLOEXEC) == 0 && ::fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0;
    Descriptor output(ends[0]);
    const Descriptor input(ends[1]);
    const pid_t id = hasPipe ? start(command, input.number()) : 0;
    Descriptor process(id != 0 ? static_cast<int>(::syscall(SYS_pidfd_open, id, 0U)) : -1);
    if (process.number() >= 0) {
        new Child(id, std::move(output), std::move(process), m_scheduler, std::move(finished),
                  this);
    } else {
        if (id != 0) {
            ::kill(-id, SIGKILL);
            ::waitpid(id, nullptr, 0);
        }
        QMetaObject::invokeMethod(
            this, [finished = std::move(finished)] { finished(std::nullopt); },
            Qt::QueuedConnection);
    }
}

} // namespace morvane

#include "moc_BoundedTools.cpp"
