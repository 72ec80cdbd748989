#pragma once

#include <QByteArray>

#include <optional>

namespace morvane {

/// Our side of the talk with Codex's app-server: what it says, cut into its lines, and what there
/// is to say to that. One JSON object is a line, in both directions.
class CodexExchange {
public:
    /// What is said first. `version` is this program's.
    static QByteArray initializeRequest(const QString &version);

    /// What is said when the first answer has come.
    static QByteArray initializedAndReadRequest();

    struct ConsumeAction {
        bool sendsReadRequest = false; ///< it is to be sent now, once
        bool isOver = false;           ///< the answer is there, or none will be taken any more
    };

    /// Takes the next piece of what the server says.
    ConsumeAction consume(const QByteArray &data);

    /// The whole line of the answer about the limits.
    const std::optional<QByteArray> &response() const { return m_response; }

private:
    void consumeLine(const QByteArray &line, ConsumeAction &action);

    QByteArray m_buffer; ///< what has no line feed yet
    bool m_sentReadRequest = false;
    std::optional<QByteArray> m_response;
};

} // namespace morvane
