#include "Platform/Linux/Desktop/SingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QThread>

namespace morvane {

namespace {

constexpr int answerLimit = 1000; // milliseconds

constexpr int retryDelay = 20; // milliseconds

/// A socket's path may be no longer than about a hundred bytes, so it doesn't go into a folder of
/// the person's naming where there is another.
QString socketPath(const QString &configFolder) {
    const QByteArray hash =
        QCryptographicHash::hash(configFolder.toUtf8(), QCryptographicHash::Sha256).toHex();
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool usable = !runtimeFolder.isEmpty() && QDir(runtimeFolder).exists();
    return QStringLiteral("%1/morvane-%2.socket")
        .arg(usable ? runtimeFolder : configFolder, QString::fromLatin1(hash.left(16)));
}

} // namespace

SingleInstance::SingleInstance(const QString &configFolder)
    : m_socketPath(socketPath(configFolder)),
      // Not beside the socket, whose folder depends on how the program was started.
      m_lock(configFolder + QLatin1String("/running.lock")) {
    QDir().mkpath(configFolder);
    // A lock is stale when its process is gone, however long the process has run.
    m_lock.setStaleLockTime(0);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection()) {
            socket->deleteLater();
            emit reopened();
        }
    });
}

bool SingleInstance::claim() {
    if (!m_lock.tryLock() && m_lock.error() == QLockFile::LockFailedError) {
        tellTheFirst();
        return false;
    }
    // Where no lock can be had at all, running is better than not.
    QLocalServer::removeServer(m_socketPath);
    m_server.listen(m_socketPath);
    return true;
}

/// The first may have its lock and not listen yet.
void SingleInstance::tellTheFirst() const {
    const QDeadlineTimer deadline(answerLimit);
    QLocalSocket socket;
    do {
        socket.connectToServer(m_socketPath);
        if (socket.waitForConnected(static_cast<int>(deadline.remainingTime()))) {
            return;
        }
        QThread::msleep(retryDelay);
    } while (!deadline.hasExpired());
}

} // namespace morvane
