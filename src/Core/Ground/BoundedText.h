#pragma once

#include <QString>

/// Bounds what an outsider's text may cost to lay out. A character as a person counts them may be
/// made of any number of code units, and one of thousands of marks or joined emoji holds a text
/// engine up for seconds. Safe from any thread.
namespace morvane::BoundedText {

/// The first so many user-perceived characters, and of each its first 24 code units, which hold
/// every character that people write. Where there were more characters, "…" follows.
QString of(const QString &text, qsizetype maxCharacters);

/// What a line may show, and what a paragraph or a tool tip may.
inline constexpr qsizetype lineLength = 160;
inline constexpr qsizetype paragraphLength = 1200;

} // namespace morvane::BoundedText
