#include "Core/Usage/CodexExchange.h"

#include "Core/Usage/UsageFormat.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace morvane {

namespace {

constexpr double initializeID = 1;
constexpr double readID = 2;

/// Nothing that is read here comes near it.
constexpr qsizetype longestLine = 1'048'576;

QByteArray line(const QJsonObject &message) {
    return QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

QByteArray CodexExchange::initializeRequest(const QString &version) {
    return line(
        {{"method", "initialize"},
         {"id", initializeID},
         {"params", QJsonObject{{"clientInfo", QJsonObject{{"name", "morvane"},
                                                           {"title", "Morvane"},
                                                           {"version", version}}},
                                {"capabilities", QJsonObject{{"experimentalApi", true}}}}}});
}

QByteArray CodexExchange::initializedAndReadRequest() {
    return line({{"method", "initialized"}}) +
           line({{"method", "account/rateLimits/read"}, {"id", readID}});
}

CodexExchange::ConsumeAction CodexExchange::consume(const QByteArray &data) {
    ConsumeAction action;
    qsizetype end = m_buffer.size();
    m_buffer += data;
    qsizetype start = 0;
    while ((end = m_buffer.indexOf('\n', end)) >= 0) {
        consumeLine(m_buffer.mid(start, end - start), action);
        start = ++end;
    }
    m_buffer.remove(0, start);
    action.isOver |= m_buffer.size() > longestLine;
    return action;
}

/// Anything else that the server sends, such as its notifications, is ignored.
void CodexExchange::consumeLine(const QByteArray &line, ConsumeAction &action) {
    const QJsonObject message = QJsonDocument::fromJson(line).object();
    const auto id = UsageFormat::doubleValue(message[u"id"]);
    if (id == initializeID && message.contains(u"result") && !m_sentReadRequest) {
        m_sentReadRequest = true;
        action.sendsReadRequest = true;
    } else if (id == readID) {
        m_response = line;
        action.isOver = true;
    }
}

} // namespace morvane
