#pragma once

#include <QString>

#include <array>
#include <optional>

namespace morvane {

/// On which displays Morvane shows itself.
enum class DisplayTargetMode {
    all,
    builtinOnly,
    externalOnly,
};

inline constexpr std::array allDisplayTargetModes{
    DisplayTargetMode::all, DisplayTargetMode::builtinOnly, DisplayTargetMode::externalOnly};

/// The mode's name as stored.
QString rawValue(DisplayTargetMode mode);
std::optional<DisplayTargetMode> displayTargetMode(const QString &rawValue);

} // namespace morvane
