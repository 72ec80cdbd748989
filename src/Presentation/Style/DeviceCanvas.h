#pragma once

#include <QPainter>
#include <QRectF>

#include <cmath>

namespace morvane {

/// A square of whole device pixels for a small picture that is designed on 16 by 16 units. While it
/// lives, its painter uses device pixels, with the origin in the square's corner. Straight lines
/// are aligned to whole pixels, so that they are sharp at every scale. Made on the stack to paint.
class DeviceCanvas {
public:
    /// Takes the largest square in the middle of the frame, which is in the painter's coordinates.
    DeviceCanvas(QPainter &painter, const QRectF &frame);
    ~DeviceCanvas() { m_painter.restore(); }
    DeviceCanvas(const DeviceCanvas &) = delete;
    DeviceCanvas &operator=(const DeviceCanvas &) = delete;

    QPainter &painter() { return m_painter; }

    /// The width of a line in device pixels, a multiple of one half.
    double lineWidth() const { return m_lineWidth; }

    /// The width of a horizontal or vertical line, in whole device pixels.
    double wholeWidth() const { return std::floor(m_lineWidth); }

    double scale(double units) const { return units * m_side / 16; }

    /// The device coordinate for the middle of a line at this coordinate of the design.
    double line(double units) const;

    /// The device coordinate for the edge of a filled shape at this coordinate of the design.
    double edge(double units) const;

    QPointF point(double x, double y) const { return {scale(x), scale(y)}; }
    QPointF linePoint(double x, double y) const { return {line(x), line(y)}; }

private:
    QPainter &m_painter;
    int m_side;
    double m_lineWidth;
};

} // namespace morvane
