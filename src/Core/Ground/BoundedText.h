#pragma once

#include <QString>

/// Bounds the cost of laying out a text from outside. A user-perceived character may consist of any
/// number of code units, and one with thousands of marks or joined emoji holds up a text engine for
/// seconds. Safe from any thread.
namespace morvane::BoundedText {

/// The first `maxCharacters` user-perceived characters, each cut to 24 code units, which is enough
/// for every character that people write. "…" follows if there were more characters.
QString of(const QString &text, qsizetype maxCharacters);

/// The most characters of a line, and of a paragraph or a tool tip.
inline constexpr qsizetype lineLength = 160;
inline constexpr qsizetype paragraphLength = 1200;

} // namespace morvane::BoundedText
