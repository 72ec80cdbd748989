#pragma once

#include <string_view>

namespace morvane {

/// The body of an HTTP response as far as it has been received: empty unless the status is 200 and
/// the whole of a stated, positive length is there.
[[nodiscard]] std::string_view completeBody(std::string_view response);

} // namespace morvane
