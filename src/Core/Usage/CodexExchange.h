#pragma once

#include <QByteArray>

#include <optional>

namespace morvane {

/// Our side of the exchange with Codex's app-server: splits its output into lines, and says what to
/// send in reply. Each line is one JSON object, in both directions.
class CodexExchange {
public:
    /// The first message. `version` is this program's.
    static QByteArray initializeRequest(const QString &version);

    /// What to send after the first answer.
    static QByteArray initializedAndReadRequest();

    struct ConsumeAction {
        bool sendsReadRequest = false; ///< the read request is due now; true once
        bool isOver = false;           ///< the answer is there, or no longer waited for
    };

    /// Takes the next piece of the server's output.
    ConsumeAction consume(const QByteArray &data);

    /// The whole line of the answer about the limits.
    const std::optional<QByteArray> &response() const { return m_response; }

private:
    void consumeLine(const QByteArray &line, ConsumeAction &action);

    QByteArray m_buffer; ///< the unfinished line
    bool m_sentReadRequest = false;
    std::optional<QByteArray> m_response;
};

} // namespace morvane
