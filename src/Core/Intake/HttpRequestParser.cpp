#include "Core/Intake/HttpRequestParser.h"

#include <QString>
#include <simdjson.h>

#include <algorithm>
#include <charconv>
#include <utility>

namespace morvane {

namespace {

/// No payload comes near it, and sums with it stay far from overflowing.
constexpr long long maxLength = 1LL << 40;

/// The most that is reserved for a body at once, however long it claims to be.
constexpr std::size_t maxReserved = std::size_t(1) << 20;

std::string_view stripped(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == text.npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// Takes the same time for any wrong token of the right length.
bool sameToken(std::string_view given, std::string_view expected) {
    if (given.size() != expected.size()) {
        return false;
    }
    unsigned char difference = 0;
    for (std::size_t position = 0; position < expected.size(); ++position) {
        difference = static_cast<unsigned char>(difference |
                                                (static_cast<unsigned char>(given[position]) ^
                                                 static_cast<unsigned char>(expected[position])));
    }
    return difference == 0;
}

} // namespace

HttpRequestParser::Status HttpRequestParser::take(std::string_view bytes) {
    if (m_status == Status::unfinished && m_stage != Stage::body) {
        takeHead(bytes);
    }
    if (m_status == Status::unfinished && m_stage == Stage::body) {
        takeBody(bytes);
    }
    return m_status;
}

bool HttpRequestParser::isCounting() const {
    return m_status == Status::hopeless || (m_stage == Stage::body && !isAuthorised());
}

void HttpRequestParser::takeHead(std::string_view &bytes) {
    const std::string_view all = bytes;
    while (m_stage != Stage::body && m_status == Status::unfinished && !bytes.empty()) {
        takeLine(bytes);
    }
    if (!isUtf8(all.substr(0, all.size() - bytes.size()))) {
        m_status = Status::hopeless;
    }
}

/// A character may be split between two arrivals; from there on the slower decoder takes over.
bool HttpRequestParser::isUtf8(std::string_view head) {
    if (!m_utf8 && simdjson::validate_utf8(head.data(), head.size())) {
        return true;
    }
    if (!m_utf8) {
        m_utf8.emplace(QStringDecoder::Utf8);
    }
    static_cast<void>(QString(m_utf8->decode(QByteArrayView(head))));
    return !m_utf8->hasError();
}

/// Takes a line off the front, or all that has come of it.
void HttpRequestParser::takeLine(std::string_view &bytes) {
    const std::size_t end = lineFeed(bytes);
    std::string_view part = bytes.substr(0, end);
    bytes.remove_prefix(std::min(part.size() + 1, bytes.size()));
    const bool endsWithReturn = part.ends_with('\r');
    // The return that ended the last arrival has turned out to be part of the line.
    if (m_endsWithReturn && !part.empty()) {
        hold("\r");
    }
    part.remove_suffix(endsWithReturn ? 1 : 0);
    if (end == bytes.npos) {
        hold(part);
        m_isWithinLine = true;
        m_endsWithReturn = endsWithReturn;
        return;
    }
    if (m_isWithinLine) {
        hold(part);
        endLine(std::exchange(m_line, std::string()));
    } else {
        endLine(part.substr(0, room()));
    }
    m_isWithinLine = false;
    m_endsWithReturn = false;
}

/// The position of the line feed that ends the line: the first that follows a return.
std::size_t HttpRequestParser::lineFeed(std::string_view bytes) const {
    for (auto at = bytes.find('\n'); at != bytes.npos; at = bytes.find('\n', at + 1)) {
        if (at > 0 ? bytes[at - 1] == '\r' : m_endsWithReturn) {
            return at;
        }
    }
    return bytes.npos;
}

void HttpRequestParser::hold(std::string_view part) {
    m_line.append(part.substr(0, room() - std::min(room(), m_line.size())));
}

std::size_t HttpRequestParser::room() const {
    return isAuthorised() ? std::string_view::npos : strangerRoom;
}

void HttpRequestParser::endLine(std::string_view line) {
    if (m_stage == Stage::requestLine) {
        takeRequestLine(line);
    } else if (line.empty()) {
        m_stage = Stage::body;
        takeLength();
    } else if (const auto colon = line.find(':'); colon != line.npos) {
        if (const auto header = httpHeader(stripped(line.substr(0, colon)))) {
            takeHeader(*header, stripped(line.substr(colon + 1)));
        }
    }
}

void HttpRequestParser::takeRequestLine(std::string_view line) {
    const auto blank = line.find(' ');
    if (blank == line.npos) {
        m_status = Status::hopeless;
        return;
    }
    m_request.method = line.substr(0, blank);
    line.remove_prefix(blank + 1);
    m_request.path = line.substr(0, line.find(' '));
    m_kept = m_request.method.size() + m_request.path.size();
    m_stage = Stage::headers;
}

void HttpRequestParser::takeHeader(HttpHeader header, std::string_view value) {
    if (header == HttpHeader::token) {
        m_request.isAuthorised = !m_token || sameToken(value, *m_token);
        return;
    }
    auto &place = m_request.headers[static_cast<std::size_t>(header)];
    m_kept -= place ? place->size() : 0;
    place.emplace(value.substr(0, room() - std::min(room(), m_kept)));
    m_kept += place->size();
}

/// What doesn't read as an integer counts as no length at all.
void HttpRequestParser::takeLength() {
    const auto &header = m_request.header(HttpHeader::contentLength);
    std::string_view text = header ? std::string_view(*header) : "0";
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    long long length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument) {
        length = 0;
    } else if (error == std::errc::result_out_of_range || length < 0 || length > maxLength) {
        m_status = Status::broken;
    }
    m_bodyMissing = static_cast<std::size_t>(length);
}

/// Of a stranger's body only the length matters.
void HttpRequestParser::takeBody(std::string_view bytes) {
    const std::string_view part = bytes.substr(0, m_bodyMissing);
    const bool isWhole = part.size() == m_bodyMissing;
    m_bodyMissing -= part.size();
    if (isAuthorised() && (!isWhole || !m_body.empty())) {
        if (m_body.empty()) {
            m_body.reserve(std::min(part.size() + m_bodyMissing, maxReserved));
        }
        m_body.append(part);
    }
    if (isWhole) {
        m_request.body = m_body.empty() && isAuthorised() ? part : std::string_view(m_body);
        m_status = Status::complete;
    }
}

} // namespace morvane
