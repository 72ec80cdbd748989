#pragma once

#include <QPainter>
#include <QRectF>

#include <cmath>

namespace morvane {

/// A square of whole device pixels for a small picture that is designed on 16 by 16 units. While it
/// lives, its painter counts in device pixels from the square's corner. Straight lines are put on
/// the pixels, so that they are as sharp at one scale as at another. Made on the stack to paint.
class DeviceCanvas {
public:
    /// The square is the largest in the middle of the frame, which is in the painter's own points.
    DeviceCanvas(QPainter &painter, const QRectF &frame);
    ~DeviceCanvas() { m_painter.restore(); }
    DeviceCanvas(const DeviceCanvas &) = delete;
    DeviceCanvas &operator=(const DeviceCanvas &) = delete;

    QPainter &painter() { return m_painter; }

    /// The width of a line: of whole device pixels, or with half a pixel more.
    double lineWidth() const { return m_lineWidth; }

    /// The width of a line that runs straight along the pixels.
    double wholeWidth() const { return std::floor(m_lineWidth); }

    double scale(double units) const { return units * m_side / 16; }

    /// Where the middle of a line at this place of the design belongs.
    double line(double units) const;

    /// Where the edge of a filled shape at this place of the design belongs.
    double edge(double units) const;

    QPointF point(double x, double y) const { return {scale(x), scale(y)}; }
    QPointF linePoint(double x, double y) const { return {line(x), line(y)}; }

private:
    QPainter &m_painter;
    int m_side;
    double m_lineWidth;
};

} // namespace morvane
