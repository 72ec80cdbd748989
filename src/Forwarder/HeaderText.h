#pragma once

#include <string_view>

namespace morvane {

/// Whether the text can be a header's value as it stands: the server refuses what is no UTF-8, and
/// a line break would begin a header of its own.
[[nodiscard]] bool fitsInHeader(std::string_view text);

/// What a header can hold of a text that anybody may have written: its printable ASCII and whole
/// characters of UTF-8, moved together within the text itself. Nothing that names a terminal is
/// longer than 1024 bytes, and a part of a name would be another's, so of a longer one nothing.
[[nodiscard]] std::string_view cleaned(char *text);

} // namespace morvane
