#include "Presentation/SystemImage.h"

#include <QPainter>
#include <QPainterPath>

namespace morvane {

namespace {

/// All pictures are drawn on a square of 8.
constexpr double side = 8;
constexpr double strokeWidth = 1.1;

QPainterPath polyline(const QPolygonF &points) {
    QPainterPath path;
    path.addPolygon(points);
    return path;
}

QPainterPath branch() {
    QPainterPath path;
    path.addEllipse(QPointF(2, 1.4), 1, 1);
    path.addEllipse(QPointF(2, 6.6), 1, 1);
    path.addEllipse(QPointF(6.2, 2.4), 1, 1);
    path.moveTo(2, 2.4);
    path.lineTo(2, 5.6);
    path.moveTo(6.2, 3.4);
    path.cubicTo(6.2, 5, 2, 4, 2, 5.6);
    return path;
}

QPainterPath outwardArrow() {
    QPainterPath path = polyline({{3, 1.4}, {6.6, 1.4}, {6.6, 5}});
    path.moveTo(6.6, 1.4);
    path.lineTo(1.4, 6.6);
    return path;
}

QPainterPath pathOf(SystemImage image) {
    switch (image) {
    case SystemImage::arrowTriangleBranch:
        return branch();
    case SystemImage::arrowUpForward:
        return outwardArrow();
    case SystemImage::chevronRight:
        return polyline({{2.8, 1.4}, {5.4, 4}, {2.8, 6.6}});
    case SystemImage::chevronDown:
        return polyline({{1.4, 2.8}, {4, 5.4}, {6.6, 2.8}});
    }
    return {};
}

} // namespace

void paint(QPainter &painter, SystemImage image, const QRectF &frame, const QColor &color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(frame.topLeft());
    painter.scale(frame.width() / side, frame.height() / side);
    painter.strokePath(pathOf(image),
                       QPen(color, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

} // namespace morvane
