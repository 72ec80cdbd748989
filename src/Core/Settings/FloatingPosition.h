#pragma once

#include <QString>

#include <array>
#include <optional>

namespace morvane {

/// Where the capsule hangs on an external display.
enum class FloatingPosition {
    topCenter,
    topRight,
};

inline constexpr std::array allFloatingPositions{FloatingPosition::topCenter,
                                                 FloatingPosition::topRight};

/// The position's name as stored.
QString rawValue(FloatingPosition position);
std::optional<FloatingPosition> floatingPosition(const QString &rawValue);

} // namespace morvane
