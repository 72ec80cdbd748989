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

// What is said at the socket, a byte each; behind the first of these comes the display. A second
// takes any other answer for the one of a first that it gives way to, and says nothing itself where
// a person has started it.
constexpr char heardOnScreen = '\n';
constexpr char heardWithoutScreen = '-';
constexpr char giveMeYourPlace = '+';
constexpr char startedAtLogin = 'l';

/// The folders of this login, which are on this machine and whose paths are short. A program that
/// was not started from the desktop may not be told of its own.
QStringList runtimeFolders() {
    QStringList result{qEnvironmentVariable("XDG_RUNTIME_DIR"),
                       QStringLiteral("/run/user/%1").arg(::getuid())};
    result.removeIf([](const QString &folder) {
        const QFileInfo info(folder);
        return folder.isEmpty() || !info.isDir() || info.ownerId() != ::getuid();
    });
    return result;
}

/// The machine is part of it, since its configuration folder may be another's as well.
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
    if (m_knocks) {
        ::unlink(QFile::encodeName(m_socketPath).constData());
    }
    if (m_leavesNothing) {
        m_lock.removeFile();
        QDir().rmdir(m_configFolder);
    }
}

/// A first may have its lock and not listen yet, or it may be about to end, also at a word of this.
/// And one whose lock's file was taken away is still there.
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

/// In the folder that doesn't depend on how the program was started, where that can be done and no
/// other machine has done it. Where no lock can be had at all, running is better than not.
KernelLock::Outcome SingleInstance::takeLock() {
    auto result = KernelLock::Outcome::impossible;
    for (const QString &folder : QStringList{m_configFolder} + m_runtimeFolders) {
        const QString file = folder + m_name + QLatin1String(".lock");
        result = m_lock.take(file);
        if (result == KernelLock::Outcome::heldElsewhere) {
            // Or here, and not signed yet since the machine was started.
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
            return Answer::silence; // many have come already
        }
    }
    return Answer::nobody;
}

/// A first that doesn't tell its display is taken to be on this one.
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

/// A socket's path may be no longer than about a hundred bytes, so it goes into a folder of the
/// person's naming only where there is no other.
void SingleInstance::listen() {
    for (const QString &folder : m_runtimeFolders + QStringList{m_configFolder}) {
        const QString path = folder + m_name + QLatin1String(".socket");
        m_socket = UnixSockets::listenAt(path).descriptor;
        if (m_socket->number() >= 0) {
            m_socketPath = path;
            m_knocks.emplace(m_socket->number(), QSocketNotifier::Read);
            connect(&*m_knocks, &QSocketNotifier::activated, this, &SingleInstance::answer);
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
        // Whoever knocks goes on knocking while there is no descriptor to let it in by.
        m_knocks->setEnabled(false);
        QTimer::singleShot(pause, this, [this] { m_knocks->setEnabled(true); });
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
