#pragma once

#include "Core/Intake/HttpHeader.h"

#include <QString>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

/// One HTTP/1.1 request, as far as the event server reads it.
struct HttpRequest {
    std::string method;
    std::string path; ///< with the query, if there is one
    std::array<std::optional<std::string>, httpHeaderCount> headers;
    bool isAuthorised = false; ///< it carries the token, which isn't among the headers
    std::string_view body;     ///< empty where the request isn't authorised

    /// Of several headers of one name the last counts.
    const std::optional<std::string> &header(HttpHeader header) const {
        return headers[static_cast<std::size_t>(header)];
    }

    /// The same; empty where there is none.
    std::string_view value(HttpHeader name) const {
        const auto &value = header(name);
        return value ? std::string_view(*value) : std::string_view();
    }
    QString text(HttpHeader name) const { return QString::fromUtf8(QByteArrayView(value(name))); }
};

} // namespace morvane
