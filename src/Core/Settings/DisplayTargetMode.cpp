#include "Core/Settings/DisplayTargetMode.h"

namespace morvane {

QString rawValue(DisplayTargetMode mode) {
    switch (mode) {
    case DisplayTargetMode::all:
        break;
    case DisplayTargetMode::builtinOnly:
        return QStringLiteral("builtinOnly");
    case DisplayTargetMode::externalOnly:
        return QStringLiteral("externalOnly");
    }
    return QStringLiteral("all");
}

std::optional<DisplayTargetMode> displayTargetMode(const QString &text) {
    for (const DisplayTargetMode mode : allDisplayTargetModes) {
        if (rawValue(mode) == text) {
            return mode;
        }
    }
    return std::nullopt;
}

} // namespace morvane
