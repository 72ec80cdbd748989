#pragma once

#include "Presentation/Notch/NotchBridgeShape.h"

#include <QSizeF>

namespace morvane {

/// The black body around a notch at one moment. A plain value; in points.
struct NotchShell {
    QSizeF size;
    NotchBridgeShape shape;

    /// Its rectangle below the middle of the upper edge of a stage.
    QRectF frame(double stageWidth) const {
        return {(stageWidth - size.width()) / 2, 0, size.width(), size.height()};
    }

    friend bool operator==(const NotchShell &, const NotchShell &) = default;

    /// The shell that is a share of the way from one to another.
    static NotchShell between(const NotchShell &from, const NotchShell &to, double share) {
        const auto mix = [share](double a, double b) { return a + (b - a) * share; };
        return {
            {mix(from.size.width(), to.size.width()), mix(from.size.height(), to.size.height())},
            {mix(from.shape.topCornerRadius, to.shape.topCornerRadius),
             mix(from.shape.bottomCornerRadius, to.shape.bottomCornerRadius)}};
    }
};

} // namespace morvane
