#pragma once

#include "Presentation/Style/Colors.h"

#include <array>

/// The colours in which limits are shown: the nearer to the end, the warmer.
namespace morvane::UsageMilestoneStyle {

inline constexpr QColor cool = Colors::sRgb(0.28, 0.76, 0.90);
inline constexpr QColor nominal = Colors::sRgb(0.36, 0.82, 0.64);
inline constexpr QColor amber = Colors::sRgb(0.98, 0.74, 0.26);
inline constexpr QColor orange = Colors::sRgb(1.0, 0.52, 0.24);
inline constexpr QColor coral = Colors::sRgb(1.0, 0.36, 0.38);

/// Each applies from the threshold of `UsageMilestone` at the same index.
inline constexpr std::array milestoneColors{amber, orange, coral};

/// The colour of this much of a limit, from 0 to 1.
QColor color(double value);

} // namespace morvane::UsageMilestoneStyle
