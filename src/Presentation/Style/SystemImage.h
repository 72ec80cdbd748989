#pragma once

class QColor;
class QPainter;
class QRectF;

namespace morvane {

/// Our own small set of pictures, sharp at any scale.
enum class SystemImage {
    arrowTriangleBranch,
    arrowUpForward,
    arrowClockwise,
    arrowTurnUpLeft, ///< a reply
    bellFill,
    checkmarkCircleFill,
    chevronDown,
    chevronRight,
    circle,
    cursorarrowMotionlines,
    exclamationmarkCircle,
    exclamationmarkTriangleFill,
    keyboard, ///< "command" elsewhere
    macwindow,
    pencil,
    terminal,
};

/// Draws the picture into the largest square in the middle of the frame.
void paint(QPainter &painter, SystemImage image, const QRectF &frame, const QColor &color);

} // namespace morvane
