#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// One HTTP/1.1 request, as far as the event server reads any. A view: it is valid as long as the
/// buffer that it was parsed from.
struct HttpRequest {
    /// Names are in lower case.
    using Header = std::pair<std::string, std::string_view>;

    std::string_view method;
    std::string_view path; ///< with the query, if there is one
    std::vector<Header> headers;
    std::string_view body;

    /// The value of the header, whose name is given in lower case. Of several of one name the last
    /// counts.
    std::optional<std::string_view> header(std::string_view name) const;
};

/// Finds a request in the bytes that have arrived so far. It remembers how far it has looked, so
/// that a request which trickles in is not read again from its first byte each time. One parser
/// belongs to one buffer that only grows.
class HttpRequestParser {
public:
    enum class Status {
        complete,
        unfinished, ///< more bytes may complete it
        hopeless,   ///< no bytes to come can complete it; the peer isn't told, it is waited out
        broken,     ///< the length is negative or beyond all measure: not worth waiting for
    };

    /// Looks at the whole buffer. After `complete` the request is a view of it.
    Status parse(std::string_view buffer);

    const HttpRequest &request() const { return m_request; }

private:
    Status parseHead(std::string_view head);
    void parseHeaderLine(std::string_view line);
    Status takeLength();

    static constexpr std::size_t unknown = std::numeric_limits<std::size_t>::max();

    HttpRequest m_request;
    std::size_t m_searched = 0; ///< the head's end doesn't begin before this
    std::size_t m_bodyStart = unknown;
    std::size_t m_bodyLength = 0;
    Status m_headStatus = Status::unfinished;
};

} // namespace morvane
