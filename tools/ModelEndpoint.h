#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QTcpServer>

class QTcpSocket;

namespace morvane {

struct HttpRequest;

/// Stands in for the model that a real agent talks to, on some free port of the loopback address.
/// Answers every request at once and closes; an unknown request gets an empty answer, so that no
/// side request of an agent fails. Each request's body is kept in a folder, in the order of
/// arrival.
class ModelEndpoint : public QObject {
public:
    explicit ModelEndpoint(QString folder);

    /// 0 when no port could be had.
    quint16 port() const { return m_server.serverPort(); }

private:
    void accept();
    void read(QTcpSocket *connection);

    void keep(const HttpRequest &request);

    QString m_folder;
    int m_count = 0;
    QTcpServer m_server;
    QHash<QTcpSocket *, QByteArray> m_received;
};

} // namespace morvane
