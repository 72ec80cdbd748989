#pragma once

#include <QPainterPath>
#include <QRectF>

namespace morvane {

/// The outline of what grows out of a notch: at the top it is as wide as its rectangle and curves
/// inward to a narrower body, whose bottom corners are round. A plain value; in points.
struct NotchBridgeShape {
    double topCornerRadius = 0; ///< also how much narrower than its top the body is on either side
    double bottomCornerRadius = 0;

    QPainterPath path(const QRectF &rect) const;

    friend bool operator==(const NotchBridgeShape &, const NotchBridgeShape &) = default;
};

} // namespace morvane
