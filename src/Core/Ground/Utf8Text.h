#pragma once

#include <QString>

#include <string_view>

namespace morvane {

/// Decodes the bytes without losing a character: `QString::fromUtf8` takes a U+FEFF at the
/// beginning for a byte order mark, and drops it. Any thread.
QString textOf(std::string_view utf8);

} // namespace morvane
