#pragma once

#include <QLocalServer>
#include <QLocalSocket>

#include <functional>

namespace morvane {

/// A socket like a compositor's. It passes on each piece that a client sends.
class StandInSocket : public QLocalServer {
public:
    using Heard = std::function<void(QLocalSocket *from, const QByteArray &piece)>;

    StandInSocket(const QString &path, const Heard &heard) {
        listen(path);
        connect(this, &QLocalServer::newConnection, this, [this, heard] {
            QLocalSocket *socket = nextPendingConnection();
            connect(socket, &QLocalSocket::readyRead, socket,
                    [socket, heard] { heard(socket, socket->readAll()); });
        });
    }
};

} // namespace morvane
