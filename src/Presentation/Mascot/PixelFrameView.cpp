#include "Presentation/Mascot/PixelFrameView.h"

#include "Presentation/Style/Colors.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

constexpr int frameSide = 8;
constexpr double gap = 0.5; // points
constexpr double faintOpacity = 0.35;

/// The cells in device pixels. Every edge lies on one, or the picture would be a blur of half lit
/// pixels; a place that no whole number of pixels fills is shared out alike to both sides.
class DeviceGrid {
public:
    /// The side of a cell, gap included, and the gap that is wished for.
    DeviceGrid(double pitch, double gap)
        : m_pitch(pitch), m_gap(std::max(1, static_cast<int>(std::lround(gap)))) {
        // A gap as wide as what it parts would leave a sieve.
        if (std::floor(pitch) < 2 * m_gap + 1) {
            m_gap = 0;
        }
    }

    int side() const { return 2 * offset(frameSide / 2); }

    QRect cell(int row, int column) const {
        const QPoint topLeft(edge(column), edge(row));
        const QPoint end(edge(column + 1) - m_gap, edge(row + 1) - m_gap);
        return {topLeft, end - QPoint(1, 1)};
    }

private:
    int offset(int cells) const { return static_cast<int>(std::floor(cells * m_pitch)); }

    int edge(int index) const {
        const int fromMiddle = index - frameSide / 2;
        return side() / 2 + (fromMiddle < 0 ? -offset(-fromMiddle) : offset(fromMiddle));
    }

    double m_pitch;
    int m_gap;
};

} // namespace

PixelFrameView::PixelFrameView(double pixelSize, QWidget *parent)
    : QWidget(parent), m_pixelSize(pixelSize) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize PixelFrameView::sizeHint() const {
    const int side = static_cast<int>(std::ceil(frameSide * m_pixelSize));
    return {side, side};
}

void PixelFrameView::setFrame(const PixelFrame &frame, const QColor &color) {
    if (frame != m_frame || color != m_color) {
        m_frame = frame;
        m_color = color;
        update();
    }
}

void PixelFrameView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QTransform toDevice = painter.deviceTransform();
    const DeviceGrid grid(m_pixelSize * toDevice.m11(), gap * toDevice.m11());
    const QRectF place = toDevice.mapRect(QRectF(rect()));
    const QPoint origin(qRound(place.center().x() - grid.side() / 2.0),
                        qRound(place.center().y() - grid.side() / 2.0));
    painter.setTransform(toDevice.inverted(), true);
    painter.translate(origin);
    for (int row = 0; row < m_frame.rows.size(); ++row) {
        const QString &cells = m_frame.rows[row];
        for (int column = 0; column < cells.size(); ++column) {
            if (cells[column] == u'.') {
                continue;
            }
            const double opacity = cells[column] == u'o' ? faintOpacity : 1;
            painter.fillRect(grid.cell(row, column), Colors::faded(m_color, opacity));
        }
    }
}

} // namespace morvane
