#pragma once

class QColor;
class QPainter;
class QRectF;

namespace morvane {

/// Our own small set of pictures, sharp at any scale.
enum class SystemImage {
    arrowTriangleBranch,         ///< "arrow.triangle.branch"
    arrowUpForward,              ///< "arrow.up.forward"
    arrowClockwise,              ///< "arrow.clockwise"
    arrowTurnUpLeft,             ///< "arrow.turn.up.left", a reply
    bellFill,                    ///< "bell.fill"
    checkmarkCircleFill,         ///< "checkmark.circle.fill"
    chevronDown,                 ///< "chevron.down"
    chevronRight,                ///< "chevron.right"
    circle,                      ///< "circle"
    cursorarrowMotionlines,      ///< "cursorarrow.motionlines"
    exclamationmarkCircle,       ///< "exclamationmark.circle"
    exclamationmarkTriangleFill, ///< "exclamationmark.triangle.fill"
    keyboard,                    ///< "command" elsewhere
    macwindow,                   ///< "macwindow"
    pencil,                      ///< "pencil"
    terminal,                    ///< "terminal"
};

/// Draws the picture into the largest square in the middle of the frame.
void paint(QPainter &painter, SystemImage image, const QRectF &frame, const QColor &color);

} // namespace morvane
