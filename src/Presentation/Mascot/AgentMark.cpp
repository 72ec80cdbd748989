#include "Presentation/Mascot/AgentMark.h"

#include "Presentation/Style/DeviceCanvas.h"

#include <QPainterPath>

#include <initializer_list>

namespace morvane::AgentMark {

namespace {

QPainterPath disc(QPointF middle, double radius) {
    QPainterPath path;
    path.addEllipse(middle, radius, radius);
    return path;
}

QPainterPath leaf(const DeviceCanvas &canvas) {
    const double from = canvas.edge(2);
    const double to = canvas.edge(14);
    const double half = (to - from) / 2;
    QPainterPath path(QPointF(from, from));
    path.lineTo(from + half, from);
    path.arcTo(from, from, 2 * half, 2 * half, 90, -90);
    path.lineTo(to, to);
    path.lineTo(from + half, to);
    path.arcTo(from, from, 2 * half, 2 * half, 270, -90);
    path.closeSubpath();
    return path;
}

/// Rectangles in the units of the design, with their edges rounded to whole pixels.
QPainterPath blocks(const DeviceCanvas &canvas, std::initializer_list<QRectF> rectangles) {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (const QRectF &rectangle : rectangles) {
        path.addRect(
            QRectF(QPointF(canvas.edge(rectangle.left()), canvas.edge(rectangle.top())),
                   QPointF(canvas.edge(rectangle.right()), canvas.edge(rectangle.bottom()))));
    }
    return path;
}

QPainterPath twoDiscs(const DeviceCanvas &canvas) {
    QPainterPath path = disc(canvas.point(4.2, 8), canvas.scale(3.7));
    path.addPath(disc(canvas.point(11.8, 8), canvas.scale(3.7)));
    return path;
}

QPainterPath openRing(const DeviceCanvas &canvas) {
    const auto square = [&](double radius) {
        return QRectF(canvas.point(8 - radius, 8 - radius), canvas.point(8 + radius, 8 + radius));
    };
    constexpr double opening = 80; // degrees, towards the top right
    constexpr double start = 45 + opening / 2;
    QPainterPath path;
    path.arcMoveTo(square(6.4), start);
    path.arcTo(square(6.4), start, 360 - opening);
    path.arcTo(square(3.4), start - opening, opening - 360);
    path.closeSubpath();
    return path;
}

QPainterPath triangle(const DeviceCanvas &canvas) {
    QPainterPath path;
    path.addPolygon({canvas.point(8, 2), canvas.point(14.6, 13.6), canvas.point(1.4, 13.6)});
    path.closeSubpath();
    return path;
}

QPainterPath diamondFrame(const DeviceCanvas &canvas) {
    QPainterPath path;
    for (const double reach : {7.2, 3.2}) {
        path.addPolygon({canvas.point(8, 8 - reach), canvas.point(8 + reach, 8),
                         canvas.point(8, 8 + reach), canvas.point(8 - reach, 8)});
        path.closeSubpath();
    }
    return path;
}

QPainterPath target(const DeviceCanvas &canvas) {
    const QPointF middle = canvas.point(8, 8);
    QPainterPath path = disc(middle, canvas.scale(6.6));
    path.addPath(disc(middle, canvas.scale(4.4)));
    path.addPath(disc(middle, canvas.scale(2.2)));
    return path;
}

QPainterPath halves(const DeviceCanvas &canvas) {
    const double radius = canvas.scale(6);
    const double left = canvas.edge(7);
    const double right = canvas.edge(9);
    QPainterPath path(QPointF(left, canvas.scale(2)));
    path.arcTo(left - radius, canvas.scale(2), 2 * radius, 2 * radius, 90, 180);
    path.closeSubpath();
    path.moveTo(right, canvas.scale(14));
    path.arcTo(right - radius, canvas.scale(2), 2 * radius, 2 * radius, 270, 180);
    path.closeSubpath();
    return path;
}

QPainterPath shape(AgentKind agent, const DeviceCanvas &canvas) {
    switch (agent) {
    case AgentKind::claude:
        return leaf(canvas);
    case AgentKind::codex:
        return blocks(canvas, {{2, 3, 8, 4}, {6, 9, 8, 4}});
    case AgentKind::gemini:
        return twoDiscs(canvas);
    case AgentKind::opencode:
        return openRing(canvas);
    case AgentKind::cursor:
        return blocks(canvas, {{6, 2, 4, 12}, {2, 6, 12, 4}});
    case AgentKind::kimi:
        return triangle(canvas);
    case AgentKind::qwen:
        return diamondFrame(canvas);
    case AgentKind::qoder:
        return target(canvas);
    case AgentKind::factory:
        return blocks(canvas, {{2, 10, 4, 4}, {6, 6, 4, 8}, {10, 2, 4, 12}});
    case AgentKind::codebuddy:
        return halves(canvas);
    }
    return {};
}

} // namespace

QColor tint(AgentKind agent) {
    switch (agent) {
    case AgentKind::claude:
        return {236, 170, 128};
    case AgentKind::codex:
        return {133, 211, 180};
    case AgentKind::gemini:
        return {138, 180, 248};
    case AgentKind::opencode:
        return {214, 214, 220};
    case AgentKind::cursor:
        return {160, 184, 212};
    case AgentKind::kimi:
        return {122, 208, 230};
    case AgentKind::qwen:
        return {177, 160, 255};
    case AgentKind::qoder:
        return {242, 146, 182};
    case AgentKind::factory:
        return {236, 203, 112};
    case AgentKind::codebuddy:
        return {160, 218, 128};
    }
    return {};
}

void paint(QPainter &painter, AgentKind agent, const QRectF &frame, const QColor &color) {
    DeviceCanvas canvas(painter, frame);
    canvas.painter().fillPath(shape(agent, canvas), color);
}

} // namespace morvane::AgentMark
