#pragma once

#include <string_view>

namespace morvane {

/// Whether the text can be a header's value as it stands: the server refuses what is no UTF-8, and
/// a line break would begin a header of its own.
[[nodiscard]] bool fitsInHeader(std::string_view text);

/// The part of an untrusted text that a header can hold: printable ASCII and whole UTF-8
/// characters, moved together within the text itself. Empty for more than 1024 bytes: nothing that
/// names a terminal is longer, and a part of a name would be another name.
[[nodiscard]] std::string_view cleaned(char *text);

} // namespace morvane
