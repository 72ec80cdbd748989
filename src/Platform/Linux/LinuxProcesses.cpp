#include "Platform/Linux/LinuxProcesses.h"

#include "Platform/Linux/Descriptor.h"
#include "Platform/Linux/ProcessStatus.h"
#include "Platform/Linux/UnixSockets.h"
#include "Platform/Scheduler.h"

#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace morvane {

namespace {

constexpr qint64 longestCommandLine = 4096;
constexpr qint64 longestEnvironment = 262144;

QString procPath(std::int64_t id, const char *entry) {
    return QStringLiteral("/proc/%1/%2").arg(id).arg(QLatin1String(entry));
}

QByteArray contents(const QString &path, qint64 longest) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(longest) : QByteArray();
}

/// Waits for a pidfd, which becomes readable when its process has ended.
class Watch {
public:
    Watch(int descriptor, std::function<void()> ended)
        : m_descriptor(descriptor),
          m_notifier(new QSocketNotifier(descriptor, QSocketNotifier::Read)) {
        QObject::connect(m_notifier, &QSocketNotifier::activated, m_notifier,
                         [notifier = m_notifier, ended = std::move(ended)] {
                             notifier->setEnabled(false);
                             // It may well end this watch.
                             const auto action = ended;
                             action();
                         });
    }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;
    ~Watch() {
        m_notifier->setEnabled(false);
        m_notifier->deleteLater();
        ::close(m_descriptor);
    }

private:
    int m_descriptor;
    QSocketNotifier *m_notifier;
};

QByteArray baseName(const QByteArray &path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

/// Whether a command line runs the program, or has it interpreted. Interpreters are told their
/// options before the script.
bool runs(const QByteArray &commandLine, const QByteArray &program) {
    static const QList<QByteArray> interpreters{"node", "nodejs", "bun", "deno"};
    const QList<QByteArray> arguments = commandLine.split('\0');
    const QByteArray name = baseName(arguments.first());
    if (name == program) {
        return true;
    }
    if (!interpreters.contains(name)) {
        return false;
    }
    const auto script = std::find_if(arguments.begin() + 1, arguments.end(), [](const auto &text) {
        return !text.isEmpty() && !text.startsWith('-');
    });
    return script != arguments.end() && baseName(*script) == program;
}

} // namespace

std::optional<ProcessIdentity> LinuxProcesses::identityOf(std::int64_t id) {
    const auto status = ProcessStatus::of(id);
    struct stat space {};
    const QByteArray link = QFile::encodeName(procPath(id, "ns/pid"));
    if (!status || ::stat(link.constData(), &space) != 0) {
        return std::nullopt;
    }
    return ProcessIdentity{id, status->startedAt, space.st_ino};
}

Task LinuxProcesses::whenEnded(const ProcessIdentity &process, std::function<void()> ended) {
    const auto self = identityOf(::getpid());
    if (!self || self->numberSpace != process.numberSpace) {
        return {};
    }
    const auto descriptor =
        static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(process.id), 0U));
    if (descriptor < 0) {
        return errno == ESRCH ? m_scheduler.after(Seconds(0), std::move(ended)) : Task();
    }
    // With the descriptor open the number can't become another's any more.
    const auto present = identityOf(process.id);
    if (present && present->startedAt != process.startedAt) {
        ::close(descriptor);
        return m_scheduler.after(Seconds(0), std::move(ended));
    }
    auto watch = std::make_shared<std::unique_ptr<Watch>>(
        std::make_unique<Watch>(descriptor, std::move(ended)));
    return Task([watch] { watch->reset(); });
}

std::optional<QStringList> LinuxProcesses::workingDirectories(const QString &program) const {
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    if (entries.isEmpty()) {
        return std::nullopt;
    }
    QStringList result;
    for (const QString &entry : entries) {
        bool isProcess = false;
        const std::int64_t id = entry.toLongLong(&isProcess);
        struct stat owner {};
        if (!isProcess || ::stat(QFile::encodeName(procPath(id, "")).constData(), &owner) != 0 ||
            owner.st_uid != ::getuid() ||
            !runs(contents(procPath(id, "cmdline"), longestCommandLine), program.toUtf8())) {
            continue;
        }
        const QString folder = QFile::symLinkTarget(procPath(id, "cwd"));
        if (!folder.isEmpty()) {
            result.append(folder);
        }
    }
    return result;
}

std::optional<std::int64_t> LinuxProcesses::listenerAt(const QString &socket) const {
    const Descriptor end = UnixSockets::connectTo(socket);
    ucred peer{};
    socklen_t size = sizeof(peer);
    const bool isOurs = ::getsockopt(end.number(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
                        peer.uid == ::getuid();
    return isOurs ? std::optional<std::int64_t>(peer.pid) : std::nullopt;
}

std::optional<bool> LinuxProcesses::hearsKeys(const ProcessIdentity &process) const {
    const auto status = ProcessStatus::of(process.id);
    if (!status || identityOf(process.id) != process) {
        return std::nullopt;
    }
    if (status->state == "T") {
        return false;
    }
    return status->group == status->foregroundGroup ? std::optional(true) : std::nullopt;
}

std::optional<std::int64_t> LinuxProcesses::terminalOpener(const ProcessIdentity &process) const {
    const auto status = ProcessStatus::of(process.id);
    if (!status || status->terminal == 0 || identityOf(process.id) != process) {
        return std::nullopt;
    }
    const auto leader = ProcessStatus::of(status->session);
    return leader ? std::optional(leader->parent) : std::nullopt;
}

QProcessEnvironment LinuxProcesses::environment(std::int64_t process) const {
    QProcessEnvironment result;
    const QByteArray text = contents(procPath(process, "environ"), longestEnvironment);
    for (const QByteArray &entry : text.split('\0')) {
        if (const qsizetype end = entry.indexOf('='); end > 0) {
            result.insert(QString::fromUtf8(entry.left(end)),
                          QString::fromUtf8(entry.mid(end + 1)));
        }
    }
    return result;
}

} // namespace morvane
