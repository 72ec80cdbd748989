#include "Core/Settings/FloatingPosition.h"

namespace morvane {

QString rawValue(FloatingPosition position) {
    return position == FloatingPosition::topRight ? QStringLiteral("topRight")
                                                  : QStringLiteral("topCenter");
}

std::optional<FloatingPosition> floatingPosition(const QString &text) {
    for (const FloatingPosition position : allFloatingPositions) {
        if (rawValue(position) == text) {
            return position;
        }
    }
    return std::nullopt;
}

} // namespace morvane
