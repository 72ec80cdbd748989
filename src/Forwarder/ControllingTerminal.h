#pragma once

#include <string_view>

namespace morvane {

/// The device of the controlling terminal of this process or, for one that an agent cut off from
/// its terminal, of the nearest ancestor that has one. Empty when there is none.
[[nodiscard]] std::string_view controllingTerminal();

} // namespace morvane
