#pragma once

#include "Presentation/Notch/NotchBridgeShape.h"

#include <QSizeF>

namespace morvane {

/// The black body around a notch at one moment. A plain value; in points.
struct NotchShell {
    QSizeF size;
    NotchBridgeShape shape;

    /// Its rectangle in a stage of this width: in the middle of the upper edge.
    QRectF frame(double stageWidth) const {
        return {(stageWidth - size.width()) / 2, 0, size.width(), size.height()};
    }

    friend bool operator==(const NotchShell &, const NotchShell &) = default;

    /// Interpolates between two shells: `from` at a share of 0, `to` at 1.
    static NotchShell between(const NotchShell &from, const NotchShell &to, double share) {
        const auto mix = [share](double a, double b) { return a + (b - a) * share; };
        return {
            {mix(from.size.width(), to.size.width()), mix(from.size.height(), to.size.height())},
            {mix(from.shape.topCornerRadius, to.shape.topCornerRadius),
             mix(from.shape.bottomCornerRadius, to.shape.bottomCornerRadius)}};
    }
};

} // namespace morvane
