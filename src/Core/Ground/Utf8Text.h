#pragma once

#include <QString>

#include <string_view>

namespace morvane {

/// The text that the bytes stand for, to the last character: what Qt offers by a shorter name takes
/// a U+FEFF at the beginning for a mark of the encoding, and drops it. Any thread.
QString textOf(std::string_view utf8);

} // namespace morvane
