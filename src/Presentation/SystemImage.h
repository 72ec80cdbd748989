#pragma once

class QColor;
class QPainter;
class QRectF;

namespace morvane {

/// Our own small set of pictures, sharp at any scale.
enum class SystemImage {
    arrowTriangleBranch, ///< "arrow.triangle.branch"
    arrowUpForward,      ///< "arrow.up.forward"
    chevronRight,        ///< "chevron.right"
    chevronDown,         ///< "chevron.down"
};

void paint(QPainter &painter, SystemImage image, const QRectF &frame, const QColor &color);

} // namespace morvane
