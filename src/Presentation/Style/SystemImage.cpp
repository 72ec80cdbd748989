#include "Presentation/Style/SystemImage.h"

#include "Presentation/Style/DeviceCanvas.h"

#include <QPainterPath>
#include <QPainterPathStroker>

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

/// The parts of a picture: lines of one width, and shapes that are filled by the odd-even rule
/// unless the fill says otherwise.
struct Drawing {
    QPainterPath lines;
    QPainterPath fill;
    bool isStraight = false; ///< lines are horizontal or vertical, but for rounded corners
};

/// A bend of 90 degrees whose arms run exactly along the diagonals.
QPolygonF chevron(QPointF tip, QPointF firstArm, QPointF secondArm) {
    return {tip + firstArm, tip, tip + secondArm};
}

Drawing branch(const DeviceCanvas &canvas) {
    Drawing drawing;
    const double left = canvas.line(4.5);
    const double top = canvas.line(3.5);
    const double bottom = canvas.line(12.5);
    const QPointF fork(canvas.line(11.5), canvas.line(5.5));
    // A ring as small as this would close up, so it becomes a disc.
    const bool isSmall = canvas.scale(1.9) < 1.5;
    const double radius = isSmall ? 1.4 : canvas.scale(1.9);
    for (const QPointF node : {QPointF(left, top), QPointF(left, bottom), fork}) {
        (isSmall ? drawing.fill : drawing.lines).addEllipse(node, radius, radius);
    }
    drawing.lines.moveTo(left, top + radius);
    drawing.lines.lineTo(left, bottom - radius);
    drawing.lines.moveTo(fork.x(), fork.y() + radius);
    drawing.lines.cubicTo(canvas.point(11.5, 10.5), canvas.point(5, 8), {left, bottom - radius});
    return drawing;
}

Drawing outwardArrow(const DeviceCanvas &canvas) {
    Drawing drawing;
    const QPointF tip(canvas.line(12.2), canvas.line(3.4));
    const double reach = std::round(canvas.scale(8.6));
    const double arm = std::round(canvas.scale(6.4));
    drawing.lines.addPolygon({tip - QPointF(arm, 0), tip, tip + QPointF(0, arm)});
    drawing.lines.addPolygon({tip, tip + QPointF(-reach, reach)});
    return drawing;
}

Drawing turningArrow(const DeviceCanvas &canvas) {
    Drawing drawing;
    const QPointF corner(canvas.line(13), canvas.line(6.4));
    const double arm = std::round(canvas.scale(4));
    drawing.lines.addPolygon({corner - QPointF(0, arm), corner, corner - QPointF(arm, 0)});
    const QPointF middle(canvas.line(7.8), canvas.line(8.2));
    const double radius = canvas.scale(5.4);
    const QRectF circle(middle - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius));
    QPainterPath arc;
    arc.arcMoveTo(circle, -20);
    arc.arcTo(circle, -20, -305);
    arc.lineTo(corner);
    drawing.lines.addPath(arc);
    return drawing;
}

Drawing replyArrow(const DeviceCanvas &canvas) {
    Drawing drawing;
    const QPointF tip(canvas.line(2.4), canvas.line(6.5));
    const double arm = std::round(canvas.scale(4));
    drawing.lines.addPolygon(chevron(tip, {arm, -arm}, {arm, arm}));
    const double end = canvas.line(13.4);
    QPainterPath shaft(tip);
    shaft.lineTo(canvas.scale(9.4), tip.y());
    shaft.quadTo({end, tip.y()}, {end, canvas.scale(10.4)});
    shaft.lineTo(end, canvas.scale(13));
    drawing.lines.addPath(shaft);
    return drawing;
}

Drawing bell(const DeviceCanvas &canvas) {
    Drawing drawing;
    const auto at = [&](double x, double y) { return canvas.point(x, y); };
    const double rim = canvas.edge(11.8);
    QPainterPath body(QPointF(canvas.scale(2), rim));
    body.cubicTo(at(3.6, 10.4), at(3.8, 9.4), at(3.8, 6.8));
    body.cubicTo(at(3.8, 4), at(5.6, 2.3), at(8, 2.3));
    body.cubicTo(at(10.4, 2.3), at(12.2, 4), at(12.2, 6.8));
    body.cubicTo(at(12.2, 9.4), at(12.4, 10.4), {canvas.scale(14), rim});
    body.closeSubpath();
    drawing.fill = body;
    drawing.fill.addEllipse(at(8, 1.7), canvas.scale(1), canvas.scale(1));
    drawing.fill.setFillRule(Qt::WindingFill);
    const double clapper = canvas.edge(13);
    const double radius = canvas.scale(2);
    drawing.fill.moveTo(canvas.scale(8) + radius, clapper);
    drawing.fill.arcTo({canvas.scale(8) - radius, clapper - radius, 2 * radius, 2 * radius}, 0,
                       -180);
    drawing.fill.closeSubpath();
    return drawing;
}

QPolygonF check(const DeviceCanvas &canvas) {
    const double shorter = std::round(canvas.scale(2.5));
    const double longer = std::round(canvas.scale(5));
    return chevron(canvas.linePoint(6.9, 10.6), {-shorter, -shorter}, {longer, -longer});
}

Drawing filledCheck(const DeviceCanvas &canvas) {
    Drawing drawing;
    const double inset = canvas.edge(1);
    const double side = canvas.edge(16) - 2 * inset;
    drawing.fill.addEllipse(QRectF(inset, inset, side, side));
    QPainterPath mark;
    mark.addPolygon(check(canvas));
    QPainterPathStroker stroker;
    stroker.setWidth(canvas.lineWidth());
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    drawing.fill.addPath(stroker.createStroke(mark).simplified());
    return drawing;
}

/// The bar and the dot of an exclamation mark, as wide as a line.
void addExclamation(QPainterPath &path, const DeviceCanvas &canvas, double top, double bottom) {
    const double width = canvas.wholeWidth();
    const double left = canvas.line(8) - width / 2;
    const double dot = canvas.edge(bottom) - width;
    const double gap = std::max(1.0, std::round(canvas.scale(1.2)));
    path.addRect(left, canvas.edge(top), width, dot - gap - canvas.edge(top));
    path.addRect(left, dot, width, width);
}

/// How far a shape around this middle may reach to either side.
double roomAround(double middle, const DeviceCanvas &canvas) {
    return std::min(middle, canvas.scale(16) - middle);
}

Drawing ring(const DeviceCanvas &canvas) {
    Drawing drawing;
    const double middle = canvas.line(8);
    const double radius = roomAround(middle, canvas) - canvas.lineWidth() / 2;
    drawing.lines.addEllipse(QPointF(middle, middle), radius, radius);
    return drawing;
}

Drawing exclamationCircle(const DeviceCanvas &canvas) {
    // The mark lies on whole pixels, and the ring is centred on the mark.
    Drawing drawing = ring(canvas);
    addExclamation(drawing.fill, canvas, 4.4, 11.8);
    return drawing;
}

Drawing exclamationTriangle(const DeviceCanvas &canvas) {
    Drawing drawing;
    const double middle = canvas.line(8);
    const double base = canvas.edge(14.2);
    const double half = roomAround(middle, canvas) - canvas.scale(0.6);
    const double round = canvas.scale(1.1);
    const double slope = canvas.scale(0.65);
    QPainterPath &path = drawing.fill;
    path.moveTo(middle - slope, canvas.scale(2));
    path.quadTo({middle, canvas.scale(0.9)}, {middle + slope, canvas.scale(2)});
    path.lineTo(middle + half - slope * 0.4, base - 2 * round);
    path.quadTo({middle + half + slope * 0.3, base}, {middle + half - round * 1.2, base});
    path.lineTo(middle - half + round * 1.2, base);
    path.quadTo({middle - half - slope * 0.3, base},
                {middle - half + slope * 0.4, base - 2 * round});
    path.closeSubpath();
    addExclamation(path, canvas, 5.4, 12.6);
    return drawing;
}

Drawing titledFrame(const DeviceCanvas &canvas) {
    Drawing drawing;
    drawing.isStraight = true;
    const QRectF frame(canvas.linePoint(1.4, 2.6), canvas.linePoint(14, 13));
    const double radius = canvas.scale(1.8);
    drawing.lines.addRoundedRect(frame, radius, radius);
    const double bar = canvas.line(5.6);
    drawing.lines.moveTo(frame.left(), bar);
    drawing.lines.lineTo(frame.right(), bar);
    return drawing;
}

Drawing prompt(const DeviceCanvas &canvas) {
    Drawing drawing;
    const QRectF frame(canvas.linePoint(1.4, 2.6), canvas.linePoint(14, 13));
    const double radius = canvas.scale(1.8);
    drawing.lines.addRoundedRect(frame, radius, radius);
    const double arm = std::round(canvas.scale(2));
    drawing.lines.addPolygon(chevron(canvas.linePoint(6.6, 7.4), {-arm, -arm}, {-arm, arm}));
    drawing.lines.addPolygon({canvas.linePoint(8.6, 10), canvas.linePoint(11.4, 10)});
    return drawing;
}

/// A frame with a row of keys and the long one below them.
Drawing keyboard(const DeviceCanvas &canvas) {
    Drawing drawing;
    drawing.isStraight = true;
    const QRectF frame(canvas.linePoint(1.4, 3.4), canvas.linePoint(14.6, 12.6));
    const double radius = canvas.scale(1.8);
    drawing.lines.addRoundedRect(frame, radius, radius);
    const double side = std::max(1.0, std::round(canvas.scale(1.6)));
    const double upper = canvas.line(6.6);
    for (const double key : {4.6, 8.0, 11.4}) {
        drawing.fill.addRect(canvas.line(key) - side / 2, upper - side / 2, side, side);
    }
    drawing.lines.moveTo(canvas.linePoint(5.4, 9.8));
    drawing.lines.lineTo(canvas.linePoint(10.6, 9.8));
    return drawing;
}

Drawing movingCursor(const DeviceCanvas &canvas) {
    Drawing drawing;
    drawing.isStraight = true;
    const auto at = [&](double x, double y) { return canvas.point(x, y); };
    drawing.fill.addPolygon({{canvas.edge(6.6), canvas.scale(2)},
                             at(6.6, 12.6),
                             at(9, 10.5),
                             at(10.7, 14.2),
                             at(12.4, 13.4),
                             at(10.7, 9.8),
                             at(14, 9.4)});
    drawing.fill.closeSubpath();
    for (const double height : {4.4, 7.6, 10.8}) {
        drawing.lines.addPolygon({canvas.linePoint(1.2, height), canvas.linePoint(3.8, height)});
    }
    return drawing;
}

Drawing pencil(const DeviceCanvas &canvas) {
    Drawing drawing;
    const auto at = [&](double x, double y) { return canvas.point(x, y); };
    QPainterPath &path = drawing.fill;
    path.addPolygon({at(1.8, 14.2), at(2.8, 10.2), at(9.2, 3.8), at(12.2, 6.8), at(5.8, 13.2)});
    path.closeSubpath();
    path.moveTo(at(10.3, 2.7));
    path.lineTo(at(11.2, 1.8));
    path.quadTo(at(11.8, 1.2), at(12.4, 1.8));
    path.lineTo(at(14.2, 3.6));
    path.quadTo(at(14.8, 4.2), at(14.2, 4.8));
    path.lineTo(at(13.3, 5.7));
    path.closeSubpath();
    return drawing;
}

Drawing pointing(const DeviceCanvas &canvas, bool down) {
    Drawing drawing;
    const double arm = std::round(canvas.scale(4.6));
    const double half = std::round(canvas.scale(2.3));
    const QPointF middle(canvas.line(8), canvas.line(8));
    drawing.lines.addPolygon(down ? chevron(middle + QPointF(0, half), {-arm, -arm}, {arm, -arm})
                                  : chevron(middle + QPointF(half, 0), {-arm, -arm}, {-arm, arm}));
    return drawing;
}

Drawing drawingOf(SystemImage image, const DeviceCanvas &canvas) {
    switch (image) {
    case SystemImage::arrowTriangleBranch:
        return branch(canvas);
    case SystemImage::arrowUpForward:
        return outwardArrow(canvas);
    case SystemImage::arrowClockwise:
        return turningArrow(canvas);
    case SystemImage::arrowTurnUpLeft:
        return replyArrow(canvas);
    case SystemImage::bellFill:
        return bell(canvas);
    case SystemImage::checkmarkCircleFill:
        return filledCheck(canvas);
    case SystemImage::chevronDown:
        return pointing(canvas, true);
    case SystemImage::chevronRight:
        return pointing(canvas, false);
    case SystemImage::circle:
        return ring(canvas);
    case SystemImage::cursorarrowMotionlines:
        return movingCursor(canvas);
    case SystemImage::exclamationmarkCircle:
        return exclamationCircle(canvas);
    case SystemImage::exclamationmarkTriangleFill:
        return exclamationTriangle(canvas);
    case SystemImage::keyboard:
        return keyboard(canvas);
    case SystemImage::macwindow:
        return titledFrame(canvas);
    case SystemImage::pencil:
        return pencil(canvas);
    case SystemImage::terminal:
        return prompt(canvas);
    }
    return {};
}

} // namespace

void paint(QPainter &painter, SystemImage image, const QRectF &frame, const QColor &color) {
    DeviceCanvas canvas(painter, frame);
    const Drawing drawing = drawingOf(image, canvas);
    // Qt's fast path for pens of one pixel leaves one arm of an angle paler than the other.
    QPainterPathStroker stroker;
    stroker.setWidth(drawing.isStraight ? canvas.wholeWidth() : canvas.lineWidth());
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    QPainterPath outline = stroker.createStroke(drawing.lines);
    outline.setFillRule(Qt::WindingFill);
    canvas.painter().fillPath(outline, color);
    canvas.painter().fillPath(drawing.fill, color);
}

} // namespace morvane
