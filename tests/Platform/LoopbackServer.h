#pragma once

#include "EndToEnd/ChildProcess.h"
#include "Support/TemporaryHome.h"

#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <memory>

namespace morvane {

/// Answers each request, as soon as it is complete, with what `answer` yields for its first line.
inline void serve(QTcpServer &server, QByteArray &asked,
                  const std::function<QByteArray(const QByteArray &line)> &answer,
                  bool thenCloses = false) {
    server.listen(QHostAddress::LocalHost);
    QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server,
                     [&server, &asked, answer, thenCloses] {
                         QTcpSocket *socket = server.nextPendingConnection();
                         const auto request = std::make_shared<QByteArray>();
                         const auto read = [socket, &asked, answer, thenCloses, request] {
                             const QByteArray piece = socket->readAll();
                             asked += piece;
                             *request += piece;
                             if (request->endsWith("\r\n\r\n")) {
                                 socket->write(answer(request->first(request->indexOf('\r'))));
                                 request->clear();
                                 if (thenCloses) {
                                     socket->disconnectFromHost();
                                 }
                             }
                         };
                         QObject::connect(socket, &QTcpSocket::readyRead, socket, read);
                         read();
                     });
}

inline QUrl urlOf(const QTcpServer &server, const QString &path, const QString &scheme = "https") {
    return QUrl(scheme + "://127.0.0.1:" + QString::number(server.serverPort()) + path);
}

inline QByteArray http(const QByteArray &status, const QByteArray &body,
                       const QByteArray &headers = {}) {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\n" + headers + "\r\n" + body;
}

/// A self-signed certificate for 127.0.0.1, which this process trusts once told to.
class LoopbackCertificate {
public:
    static bool canBeMade() { return !QStandardPaths::findExecutable("openssl").isEmpty(); }

    explicit LoopbackCertificate(const TemporaryHome &home) {
        const QString key = home.path("key.pem");
        const QString certificate = home.path("certificate.pem");
        ChildProcess making({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                             "ec_paramgen_curve:prime256v1", "-nodes", "-keyout", key, "-out",
                             certificate, "-subj", "/CN=stand-in", "-addext",
                             "subjectAltName=IP:127.0.0.1"},
                            QProcessEnvironment::systemEnvironment());
        making.wait();
        m_authorities = QSslCertificate::fromPath(certificate);
        m_key = QSslKey(home.read("key.pem"), QSsl::Ec);
    }

    void giveTo(QSslServer &server) const {
        QSslConfiguration own = QSslConfiguration::defaultConfiguration();
        own.setPrivateKey(m_key);
        own.setLocalCertificate(m_authorities.value(0));
        server.setSslConfiguration(own);
    }

    /// Counts for the connections that are made from here on.
    void trust() const {
        QSslConfiguration knowing = QSslConfiguration::defaultConfiguration();
        knowing.setCaCertificates(m_authorities);
        QSslConfiguration::setDefaultConfiguration(knowing);
    }

private:
    QList<QSslCertificate> m_authorities;
    QSslKey m_key;
};

} // namespace morvane
