#pragma once

#include <QFont>

/// The fonts of the panel: the desktop's own font, at sizes of ours in points of the screen.
namespace morvane::Typography {

QFont text(int size, QFont::Weight weight = QFont::Normal);

/// A fixed-width font, for text that a program will run.
QFont code(int size);

inline constexpr int nameSize = 13;
inline constexpr int bodySize = 12;
inline constexpr int secondarySize = 11;
inline constexpr int badgeSize = 10;

} // namespace morvane::Typography
