#pragma once

#include "Core/Intake/HttpRequest.h"

#include <QStringDecoder>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

/// Parses a request from the bytes of a connection as they arrive, and looks at each byte once.
///
/// What a peer without the token makes us keep is bounded: the values that are read from its head
/// are cut at a few kilobytes, and its body is only counted.
class HttpRequestParser {
public:
    enum class Status {
        complete,
        unfinished, ///< more bytes may complete it
        hopeless,   ///< nothing can complete it; the peer isn't told, and left to time out
        broken,     ///< the length is negative or beyond all measure: not worth waiting for
    };

    /// How many bytes of a head are kept before it has shown the token.
    static constexpr std::size_t strangerRoom = 2048;

    /// The token authorises a request, and must outlive the parser; without one every request is
    /// authorised.
    explicit HttpRequestParser(std::optional<std::string_view> token) : m_token(token) {
        m_request.isAuthorised = !token;
    }

    /// Takes the bytes that follow those of the last call; must not be called once the request is
    /// complete. The body may then be a view of these bytes, and is valid only as long as they are.
    Status take(std::string_view bytes);

    /// True while the bytes to come are only counted, so that it doesn't matter what they are.
    bool isCounting() const;

    /// True when the head has shown the token so far.
    bool isAuthorised() const { return m_request.isAuthorised; }

    const HttpRequest &request() const { return m_request; }

private:
    enum class Stage { requestLine, headers, body };

    void takeHead(std::string_view &bytes);
    bool isUtf8(std::string_view head);
    void takeLine(std::string_view &bytes);
    std::size_t lineFeed(std::string_view bytes) const;
    void hold(std::string_view part);
    std::size_t room() const;
    void endLine(std::string_view line);
    void takeRequestLine(std::string_view line);
    void takeHeader(HttpHeader header, std::string_view value);
    void takeLength();
    void takeBody(std::string_view bytes);

    std::optional<std::string_view> m_token;
    HttpRequest m_request;
    Stage m_stage = Stage::requestLine;
    Status m_status = Status::unfinished;
    std::optional<QStringDecoder> m_utf8; ///< set once a character may have been split
    std::string m_line;                   ///< what is kept of a line whose end hasn't come yet
    bool m_isWithinLine = false;          ///< there is such a line
    bool m_endsWithReturn = false;        ///< and it ends with a return, which isn't in `m_line`
    std::size_t m_kept = 0;               ///< bytes kept of the request line and the headers
    std::size_t m_bodyMissing = 0;
    std::string m_body; ///< used if it comes in pieces
};

} // namespace morvane
