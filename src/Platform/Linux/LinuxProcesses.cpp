#include "Platform/Linux/LinuxProcesses.h"

#include "Platform/BackgroundPool.h"
#include "Platform/Descriptor.h"
#include "Platform/Linux/ProcessStatus.h"
#include "Platform/Linux/UnixSockets.h"
#include "Platform/Scheduler.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <linux/openat2.h>
#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace morvane {

namespace {

constexpr qint64 longestCommandLine = 4096;
constexpr qint64 longestEnvironment = 262144;
constexpr qint64 longestStatus = 16384;

QString procPath(std::int64_t id, const char *entry) {
    return QStringLiteral("/proc/%1/%2").arg(id).arg(QLatin1String(entry));
}

QByteArray contents(const QString &path, qint64 longest) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(longest) : QByteArray();
}

/// The numbers of all processes; empty if /proc doesn't show them.
std::vector<std::int64_t> allNumbers() {
    std::vector<std::int64_t> numbers;
    for (QDirIterator entries(QStringLiteral("/proc"), QDir::Dirs); entries.hasNext();) {
        entries.next();
        bool isProcess = false;
        const std::int64_t id = entries.fileName().toLongLong(&isProcess);
        if (isProcess) {
            numbers.push_back(id);
        }
    }
    return numbers;
}

/// The inode of the process's PID namespace.
std::optional<std::uint64_t> pidNamespace(std::int64_t id) {
    struct stat space {};
    const QByteArray link = QFile::encodeName(procPath(id, "ns/pid"));
    return ::stat(link.constData(), &space) == 0 ? std::optional(space.st_ino) : std::nullopt;
}

bool isSameFile(const QString &path, const QString &other) {
    struct stat status {};
    struct stat otherStatus {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 &&
           ::stat(QFile::encodeName(other).constData(), &otherStatus) == 0 &&
           status.st_dev == otherStatus.st_dev && status.st_ino == otherStatus.st_ino;
}

/// The numbers behind a name in /proc/ID/status; empty for a process that isn't there.
QList<QByteArray> statusNumbers(std::int64_t id, const QByteArray &name) {
    const QByteArray status = contents(procPath(id, "status"), longestStatus);
    const qsizetype begin = status.indexOf('\n' + name + ":\t") + 1;
    return begin > 0 ? status.mid(begin, status.indexOf('\n', begin) - begin).split('\t').mid(1)
                     : QList<QByteArray>();
}

/// The process's number in its own PID namespace: the last in the line, which begins with its
/// number in ours.
std::int64_t innermostNumber(std::int64_t id) {
    const QList<QByteArray> numbers = statusNumbers(id, "NSpid");
    return numbers.isEmpty() ? 0 : numbers.last().toLongLong();
}

/// Doesn't go by the owner of /proc/ID, which is root for a process that isn't dumpable.
bool isOurs(std::int64_t id) {
    return statusNumbers(id, "Uid").value(0) == QByteArray::number(::getuid());
}

/// Waits for a pidfd, which becomes readable when its process has ended.
class Watch {
public:
    Watch(Descriptor process, std::function<void()> ended)
        : m_process(std::move(process)),
          m_notifier(new QSocketNotifier(m_process.number(), QSocketNotifier::Read)) {
        QObject::connect(m_notifier, &QSocketNotifier::activated, m_notifier,
                         [notifier = m_notifier, ended = std::move(ended)] {
                             notifier->setEnabled(false);
                             // The action may well destroy this watch.
                             const auto action = ended;
                             action();
                         });
    }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;
    ~Watch() {
        m_notifier->setEnabled(false);
        m_notifier->deleteLater();
    }

private:
    Descriptor m_process;
    QSocketNotifier *m_notifier;
};

QByteArray baseName(const QByteArray &path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

enum class Manner { natively, interpreted };

/// How a command line runs the program, if it does. Interpreters take their own options before the
/// script.
std::optional<Manner> mannerOf(const QByteArray &commandLine, const QByteArray &program) {
    static const QList<QByteArray> interpreters{"node", "nodejs", "bun", "deno"};
    const QList<QByteArray> arguments = commandLine.split('\0');
    const QByteArray name = baseName(arguments.first());
    if (name == program) {
        return Manner::natively;
    }
    if (!interpreters.contains(name)) {
        return std::nullopt;
    }
    const auto script = std::find_if(arguments.begin() + 1, arguments.end(), [](const auto &text) {
        return !text.isEmpty() && !text.startsWith('-');
    });
    const bool isProgram = script != arguments.end() && baseName(*script) == program;
    return isProgram ? std::optional(Manner::interpreted) : std::nullopt;
}

} // namespace

bool LinuxProcesses::isNumberedHere(const ProcessIdentity &process) {
    return pidNamespace(::getpid()) == process.pidNamespace;
}

std::optional<std::int64_t> LinuxProcesses::numberHere(const ProcessIdentity &process) {
    const auto isIt = [&](std::int64_t id) {
        return pidNamespace(id) == process.pidNamespace && innermostNumber(id) == process.id;
    };
    const std::vector<std::int64_t> numbers =
        isNumberedHere(process) ? std::vector{process.id} : allNumbers();
    const auto found = std::ranges::find_if(numbers, isIt);
    const auto status = found != numbers.end() ? ProcessStatus::of(*found) : std::nullopt;
    return status && status->startedAt == process.startedAt ? std::optional(*found) : std::nullopt;
}

std::optional<ProcessIdentity> LinuxProcesses::identityOf(std::int64_t id) const {
    const auto status = ProcessStatus::of(id);
    const auto space = pidNamespace(id);
    return status && space ? std::optional(ProcessIdentity{id, status->startedAt, *space})
                           : std::nullopt;
}

Task LinuxProcesses::whenEnded(const ProcessIdentity &process, std::function<void()> ended) {
    const auto self = identityOf(::getpid());
    if (!self) {
        return {};
    }
    if (self->pidNamespace != process.pidNamespace) {
        return whenFoundHasEnded(process, std::move(ended));
    }
    Descriptor descriptor(
        static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(process.id), 0U)));
    if (descriptor.number() < 0) {
        return errno == ESRCH ? m_scheduler.after(Seconds(0), std::move(ended)) : Task();
    }
    // The descriptor stays with its process; another process that has or gets the number differs in
    // its start time.
    const auto present = ProcessStatus::of(process.id);
    if (present && present->startedAt != process.startedAt) {
        return m_scheduler.after(Seconds(0), std::move(ended));
    }
    // The task owns the watch, which ends with it.
    return Task([watch = std::make_shared<Watch>(std::move(descriptor), std::move(ended))] {});
}

/// Searches in the background, since a thousand processes take ten milliseconds. A process that
/// isn't found doesn't count as ended: it may run where it can't be seen from here.
Task LinuxProcesses::whenFoundHasEnded(const ProcessIdentity &process,
                                       std::function<void()> ended) {
    struct Search {
        std::function<void()> ended;
        Task watch;
    };
    const auto search = std::make_shared<Search>(Search{std::move(ended), {}});
    m_background.run([this, process, weak = std::weak_ptr(search)] {
        const auto number = numberHere(process);
        m_scheduler.post([this, process, number, weak] {
            const auto self = pidNamespace(::getpid());
            if (const auto found = weak.lock(); found && number && self) {
                found->watch = whenEnded({*number, process.startedAt, *self}, found->ended);
            }
        });
    });
    return Task([search] { search->watch.cancel(); });
}

std::optional<QStringList> LinuxProcesses::workingDirectories(const QString &program) const {
    const std::vector<std::int64_t> numbers = allNumbers();
    if (numbers.empty()) {
        return std::nullopt;
    }
    QHash<std::int64_t, Manner> running;
    for (const std::int64_t id : numbers) {
        const QByteArray commandLine = contents(procPath(id, "cmdline"), longestCommandLine);
        const auto manner = mannerOf(commandLine, program.toUtf8());
        if (manner && isOurs(id)) {
            running.insert(id, *manner);
        }
    }
    QStringList result;
    for (const std::int64_t id : running.keys()) {
        // Many programs are scripts that start a native one of the same name.
        const auto status = ProcessStatus::of(id);
        if (!status || running.value(status->parent, Manner::natively) == Manner::interpreted) {
            continue;
        }
        std::error_code error;
        const auto folder = std::filesystem::read_symlink(procPath(id, "cwd").toStdString(), error);
        if (!error) {
            result.append(QFile::decodeName(folder.c_str()));
        } else if (error == std::errc::permission_denied) {
            return std::nullopt; // the process isn't dumpable
        }
    }
    return result;
}

std::optional<std::int64_t> LinuxProcesses::listenerAt(const QString &socket) const {
    const Descriptor end = UnixSockets::connectTo(socket).descriptor;
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
    const bool isFollower = status->id != status->group;
    return isFollower && status->group == status->foregroundGroup ? std::optional(true)
                                                                  : std::nullopt;
}

std::optional<std::int64_t> LinuxProcesses::terminalOpener(const ProcessIdentity &process) const {
    const auto status = ProcessStatus::of(process.id);
    if (!status || status->terminal == 0 || identityOf(process.id) != process) {
        return std::nullopt;
    }
    const auto leader = ProcessStatus::of(status->session);
    return leader ? std::optional(leader->parent) : std::nullopt;
}

QByteArrayList LinuxProcesses::environment(std::int64_t process) const {
    return environment(process, QStringLiteral("/proc"));
}

QByteArrayList LinuxProcesses::environment(std::int64_t process, const QString &folder) {
    const QString path = QStringLiteral("%1/%2/environ").arg(folder).arg(process);
    return contents(path, longestEnvironment).split('\0');
}

QString LinuxProcesses::fileOf(const ProcessIdentity &process, const QString &path) const {
    const auto number = numberHere(process);
    if (!number && pidNamespace(::getpid()) != process.pidNamespace) {
        return {};
    }
    const QString root = procPath(number.value_or(::getpid()), "root");
    const bool sharesMounts =
        !number || isSameFile(procPath(*number, "ns/mnt"), procPath(::getpid(), "ns/mnt"));
    if (sharesMounts && isSameFile(root, QStringLiteral("/"))) {
        return QFileInfo(path).canonicalFilePath();
    }
    const Descriptor folder(::open(QFile::encodeName(root).constData(), O_PATH | O_CLOEXEC));
    // Without RESOLVE_IN_ROOT an absolute link would lead to a file in our own root.
    open_how how{.flags = O_PATH | O_CLOEXEC, .mode = 0, .resolve = RESOLVE_IN_ROOT};
    const Descriptor file(static_cast<int>(::syscall(
        SYS_openat2, folder.number(), QFile::encodeName(path).constData(), &how, sizeof how)));
    const QString there =
        QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(file.number()));
    // The kernel gives the path from the root of the mount namespace, wherever the process's root
    // is.
    return sharesMounts || there.isEmpty() ? there : root + there;
}

} // namespace morvane
