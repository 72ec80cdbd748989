#include "Core/HttpRequest.h"

#include <algorithm>

namespace morvane {

std::optional<std::string_view> HttpRequest::header(std::string_view name) const {
    const auto found = std::find_if(headers.rbegin(), headers.rend(),
                                    [&](const Header &header) { return header.first == name; });
    return found != headers.rend() ? std::optional(found->second) : std::nullopt;
}

} // namespace morvane
