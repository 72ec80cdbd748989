#pragma once

#include <cstddef>
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

} // namespace morvane
