#include "Platform/Linux/Desktop/SingleInstance.h"

#include "Platform/Linux/UnixSockets.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>
#include <QThread>
#include <QTimer>

#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <poll.h>
#include <sys/socket.h>
#include <tuple>
#include <unistd.h>

namespace morvane {

namespace {

constexpr int retryDelay = 20; // milliseconds
constexpr std::chrono::seconds pause(1);

// The messages on the socket, a byte each; the display follows the first of these. A second also
// gives way on an answer that is none of these, and sends nothing itself if a person has started
// it.
constexpr char heardOnScreen = '\n';
constexpr char heardWithoutScreen = '-';
constexpr char giveMeYourPlace = '+';
constexpr char startedAtLogin = 'l';

/// The runtime folders of this login, which are on this machine and have short paths.
/// XDG_RUNTIME_DIR may be unset in a program that wasn't started from the desktop.
QStringList runtimeFolders() {
    QStringList result{qEnvironmentVariable("XDG_RUNTIME_DIR"),
                       QStringLiteral("/run/user/%1").arg(::getuid())};
    result.removeIf([](const QString &folder) {
        const QFileInfo info(folder);
        return folder.isEmpty() || !info.isDir() || info.ownerId() != ::getuid();
    });
    return result;
}

/// The machine's id is part of the name, since machines may share the configuration folder.
QString nameFor(const QString &configFolder) {
    QDir().mkpath(configFolder);
    QFile::setPermissions(configFolder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QFileInfo info(configFolder);
    const QString path = info.exists() ? info.canonicalFilePath() : configFolder;
    const auto hash = QCryptographicHash::hash(path.toUtf8() + QSysInfo::machineUniqueId(),
                                               QCryptographicHash::Sha256);
    return QStringLiteral("/morvane-") + QString::fromLatin1(hash.toHex().left(16));
}

/// The X display without the number of its screen: one program serves them all.
QByteArray displayName() {
    const QByteArray name = qgetenv("DISPLAY");
    const qsizetype screen = name.indexOf('.', name.lastIndexOf(':'));
    return screen < 0 ? name : name.first(screen);
}

} // namespace

SingleInstance::SingleInstance(const QString &configFolder, Screen screen, Start start)
    : m_configFolder(configFolder), m_screen(screen), m_start(start), m_display(displayName()),
      m_name(nameFor(configFolder)), m_runtimeFolders(runtimeFolders()) {}

SingleInstance::~SingleInstance() {
    if (m_listenNotifier) {
        ::unlink(QFile::encodeName(m_socketPath).constData());
    }
    if (m_leavesNothing) {
        m_lock.removeFile();
        QDir().rmdir(m_configFolder);
    }
}

/// Retries, since a first may hold its lock and not listen yet, or be about to end, maybe at this
/// process's request. Looks for a first even if the lock was free, since one whose lock file was
/// removed still runs.
SingleInstance::Outcome SingleInstance::claim(Seconds patience) {
    const QDeadlineTimer deadline(std::chrono::ceil<std::chrono::milliseconds>(patience));
    for (;;) {
        const bool isHeld = takeLock() == KernelLock::Outcome::heldByAnother;
        const Answer answer = tellTheFirst(deadline);
        if (answer == Answer::heard) {
            return Outcome::toldTheFirst;
        }
        if (answer == Answer::heardElsewhere) {
            return Outcome::isOnAnotherDisplay;
        }
        if (answer == Answer::nobody && !isHeld) {
            listen();
            return Outcome::isFirst;
        }
        if (deadline.hasExpired()) {
            return Outcome::firstIsSilent;
        }
        QThread::msleep(retryDelay);
    }
}

/// Prefers the configuration folder, which doesn't depend on how the program was started, unless
/// locking fails there or another machine has the lock. If no lock can be had at all, running is
/// better than not.
KernelLock::Outcome SingleInstance::takeLock() {
    auto result = KernelLock::Outcome::impossible;
    for (const QString &folder : QStringList{m_configFolder} + m_runtimeFolders) {
        const QString file = folder + m_name + QLatin1String(".lock");
        result = m_lock.take(file);
        if (result == KernelLock::Outcome::heldElsewhere) {
            // Or held on this machine, whose first has not yet signed it since the boot.
            QThread::msleep(retryDelay);
            result = m_lock.take(file);
        }
        if (result != KernelLock::Outcome::impossible &&
            result != KernelLock::Outcome::heldElsewhere) {
            break;
        }
    }
    return result;
}

SingleInstance::Answer SingleInstance::tellTheFirst(const QDeadlineTimer &deadline) {
    for (const QString &folder : m_runtimeFolders + QStringList{m_configFolder}) {
        const auto [socket, error] =
            UnixSockets::connectTo(folder + m_name + QLatin1String(".socket"));
        if (error == 0) {
            return hearTheFirst(socket.number(), deadline);
        }
        if (error == EAGAIN) {
            return Answer::silence; // the backlog is full
        }
    }
    return Answer::nobody;
}

/// A first that doesn't tell its display is taken to be on ours.
SingleInstance::Answer SingleInstance::hearTheFirst(int socket, const QDeadlineTimer &deadline) {
    pollfd answer{.fd = socket, .events = POLLIN, .revents = 0};
    std::array<char, 256> text{};
    const bool isThere = ::poll(&answer, 1, static_cast<int>(deadline.remainingTime())) == 1;
    const ssize_t size = isThere ? ::recv(socket, text.data(), text.size(), 0) : 0;
    if (size < 1) {
        return Answer::silence;
    }
    const bool isWanted = m_screen == Screen::reached;
    if (isWanted && text[0] == heardWithoutScreen) {
        std::ignore = ::send(socket, &giveMeYourPlace, 1, MSG_NOSIGNAL);
        return Answer::silence;
    }
    if (m_start == Start::atLogin) {
        std::ignore = ::send(socket, &startedAtLogin, 1, MSG_NOSIGNAL);
    }
    m_displayOfFirst = QByteArray(text.data() + 1, size - 1);
    const bool isSeen = !isWanted || m_displayOfFirst.isEmpty() || m_displayOfFirst == m_display;
    return isSeen ? Answer::heard : Answer::heardElsewhere;
}

/// A socket's path is limited to about a hundred bytes, so the configuration folder, whose path may
/// be longer, comes last.
void SingleInstance::listen() {
    for (const QString &folder : m_runtimeFolders + QStringList{m_configFolder}) {
        const QString path = folder + m_name + QLatin1String(".socket");
        m_socket = UnixSockets::listenAt(path).descriptor;
        if (m_socket->number() >= 0) {
            m_socketPath = path;
            m_listenNotifier.emplace(m_socket->number(), QSocketNotifier::Read);
            connect(&*m_listenNotifier, &QSocketNotifier::activated, this, &SingleInstance::answer);
            return;
        }
    }
}

void SingleInstance::answer() {
    const auto second = std::make_shared<Descriptor>(
        ::accept4(m_socket->number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (second->number() >= 0) {
        const QByteArray answer = m_screen == Screen::reached ? heardOnScreen + m_display
                                                              : QByteArray(1, heardWithoutScreen);
        std::ignore = ::send(second->number(), answer.constData(),
                             static_cast<size_t>(answer.size()), MSG_NOSIGNAL);
        auto *const word = new QSocketNotifier(second->number(), QSocketNotifier::Read, this);
        connect(word, &QSocketNotifier::activated, this, [this, word, second] {
            word->setEnabled(false);
            word->deleteLater();
            hear(second->number());
        });
    } else if (errno != EAGAIN) {
        // With no descriptor free the connection stays pending and would wake us up all the time.
        m_listenNotifier->setEnabled(false);
        QTimer::singleShot(pause, this, [this] { m_listenNotifier->setEnabled(true); });
    }
}

void SingleInstance::hear(int second) {
    char word = 0;
    std::ignore = ::recv(second, &word, 1, 0);
    if (word == giveMeYourPlace) {
        emit placeWanted();
    } else if (word != startedAtLogin) {
        emit reopened();
    }
}

} // namespace morvane

#include "moc_SingleInstance.cpp"
