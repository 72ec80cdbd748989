#include "Core/Intake/HttpRequestParser.h"

#include <simdjson.h>

#include <algorithm>
#include <charconv>

namespace morvane {

namespace {

constexpr std::string_view headEnd = "\r\n\r\n";
constexpr std::string_view lineEnd = "\r\n";

/// No payload comes near it, and sums with it stay far from overflowing.
constexpr long long maxLength = 1LL << 40;

std::string_view stripped(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == text.npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return result;
}

/// Takes the text up to the separator off the front, with the separator.
std::string_view takeUpTo(std::string_view &text, std::string_view separator) {
    const auto end = std::min(text.find(separator), text.size());
    const std::string_view front = text.substr(0, end);
    text.remove_prefix(std::min(end + separator.size(), text.size()));
    return front;
}

} // namespace

std::optional<std::string_view> HttpRequest::header(std::string_view name) const {
    const auto found = std::find_if(headers.rbegin(), headers.rend(),
                                    [&](const Header &header) { return header.first == name; });
    return found != headers.rend() ? std::optional(found->second) : std::nullopt;
}

HttpRequestParser::Status HttpRequestParser::parse(std::string_view buffer) {
    if (m_bodyStart == unknown) {
        const auto end = buffer.find(headEnd, m_searched);
        if (end == buffer.npos) {
            m_searched = buffer.size() - std::min(buffer.size(), headEnd.size() - 1);
            return Status::unfinished;
        }
        m_bodyStart = end + headEnd.size();
    } else if (m_headStatus != Status::unfinished || buffer.size() - m_bodyStart < m_bodyLength) {
        return m_headStatus;
    }
    // The buffer may have moved since the last look, and with it all that the request views.
    m_request = HttpRequest();
    m_headStatus = parseHead(buffer.substr(0, m_bodyStart - headEnd.size()));
    if (m_headStatus != Status::unfinished || buffer.size() - m_bodyStart < m_bodyLength) {
        return m_headStatus;
    }
    m_request.body = buffer.substr(m_bodyStart, m_bodyLength);
    return Status::complete;
}

HttpRequestParser::Status HttpRequestParser::parseHead(std::string_view head) {
    if (!simdjson::validate_utf8(head.data(), head.size())) {
        return Status::hopeless;
    }
    std::string_view requestLine = takeUpTo(head, lineEnd);
    if (requestLine.find(' ') == requestLine.npos) {
        return Status::hopeless;
    }
    m_request.method = takeUpTo(requestLine, " ");
    m_request.path = takeUpTo(requestLine, " ");
    m_request.headers.reserve(16);
    while (!head.empty()) {
        parseHeaderLine(takeUpTo(head, lineEnd));
    }
    return takeLength();
}

void HttpRequestParser::parseHeaderLine(std::string_view line) {
    const auto colon = line.find(':');
    if (colon != line.npos) {
        m_request.headers.emplace_back(lowerCase(stripped(line.substr(0, colon))),
                                       stripped(line.substr(colon + 1)));
    }
}

/// What doesn't read as an integer counts as no length at all.
HttpRequestParser::Status HttpRequestParser::takeLength() {
    std::string_view text = m_request.header("content-length").value_or("0");
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    long long length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument) {
        length = 0;
    } else if (error == std::errc::result_out_of_range || length < 0 || length > maxLength) {
        return Status::broken;
    }
    m_bodyLength = static_cast<std::size_t>(length);
    return Status::unfinished;
}

} // namespace morvane
