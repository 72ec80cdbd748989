#include "ModelEndpoint.h"

#include "Core/Intake/HttpRequestParser.h"
#include "ModelDialects.h"

#include <QFile>
#include <QTcpSocket>

#include <utility>

namespace morvane {

namespace {

using nlohmann::json;

ModelDialects::Answer answerTo(const HttpRequest &request) {
    const std::string path = request.path.substr(0, request.path.find('?'));
    const json body = json::parse(request.body, nullptr, false);
    if (body.is_object()) {
        if (path.ends_with("/messages")) {
            return ModelDialects::messages(body);
        }
        if (path.ends_with("/responses")) {
            return ModelDialects::responses(body);
        }
        if (path.ends_with("/chat/completions")) {
            return ModelDialects::chatCompletions(body);
        }
        if (path.ends_with(":generateContent") || path.ends_with(":streamGenerateContent")) {
            return ModelDialects::generateContent(body, path.ends_with(":streamGenerateContent"));
        }
    }
    // The least that the readers of a token count or of a list of models insist on.
    return {
        "application/json",
        json{{"input_tokens", 1000}, {"data", json::array()}, {"models", json::array()}}.dump()};
}

QByteArray response(const ModelDialects::Answer &answer, bool isWithBody) {
    return "HTTP/1.1 " + QByteArray::number(answer.status) +
           (answer.status == 200 ? " OK" : " Refused") + "\r\n" + answer.headers.c_str() +
           "Content-Type: " + answer.contentType.c_str() +
           "\r\nContent-Length: " + QByteArray::number(qulonglong(answer.body.size())) +
           "\r\nConnection: close\r\n\r\n" +
           (isWithBody ? QByteArray::fromStdString(answer.body) : QByteArray());
}

} // namespace

ModelEndpoint::ModelEndpoint(QString folder) : m_folder(std::move(folder)) {
    connect(&m_server, &QTcpServer::newConnection, this, &ModelEndpoint::accept);
    m_server.listen(QHostAddress::LocalHost);
}

void ModelEndpoint::accept() {
    while (QTcpSocket *connection = m_server.nextPendingConnection()) {
        connect(connection, &QTcpSocket::readyRead, this, [this, connection] { read(connection); });
        connect(connection, &QTcpSocket::disconnected, this, [this, connection] {
            m_received.remove(connection);
            connection->deleteLater();
        });
    }
}

void ModelEndpoint::read(QTcpSocket *connection) {
    QByteArray &received = m_received[connection];
    received += connection->readAll();
    HttpRequestParser parser(std::nullopt);
    if (parser.take(std::string_view(received.constData(), std::size_t(received.size()))) !=
        HttpRequestParser::Status::complete) {
        return;
    }
    const HttpRequest &request = parser.request();
    keep(request);
    connection->write(response(answerTo(request), request.method != "HEAD"));
    received.clear();
    connection->disconnectFromHost();
}

void ModelEndpoint::keep(const HttpRequest &request) {
    QString path = QString::fromUtf8(request.path.data(), qsizetype(request.path.size()));
    path = path.section(QLatin1Char('?'), 0, 0).replace(QLatin1Char('/'), QLatin1Char('-'));
    QFile file(QStringLiteral("%1/%2%3.json")
                   .arg(m_folder)
                   .arg(++m_count, 3, 10, QLatin1Char('0'))
                   .arg(path));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(request.body.data(), qint64(request.body.size()));
    }
}

} // namespace morvane
