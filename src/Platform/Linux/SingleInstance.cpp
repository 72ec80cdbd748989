#include "Platform/Linux/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>

namespace morvane {

namespace {

constexpr int answerLimit = 1000; // milliseconds

/// A socket's path may be no longer than about a hundred bytes, so it doesn't go into a folder of
/// the person's naming where there is another.
QString basePath(const QString &configFolder) {
    const QByteArray hash =
        QCryptographicHash::hash(configFolder.toUtf8(), QCryptographicHash::Sha256).toHex();
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool usable = !runtimeFolder.isEmpty() && QDir(runtimeFolder).exists();
    return QStringLiteral("%1/morvane-%2")
        .arg(usable ? runtimeFolder : configFolder, QString::fromLatin1(hash.left(16)));
}

} // namespace

SingleInstance::SingleInstance(const QString &configFolder)
    : m_socketPath(basePath(configFolder) + QLatin1String(".socket")),
      m_lock(basePath(configFolder) + QLatin1String(".lock")) {
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

void SingleInstance::tellTheFirst() const {
    QLocalSocket socket;
    socket.connectToServer(m_socketPath);
    socket.waitForConnected(answerLimit);
}

} // namespace morvane
