#include "Presentation/Mascot/PixelFrameView.h"

#include "Presentation/Style/Colors.h"

#include <QPainter>

#include <cmath>

namespace morvane {

namespace {

constexpr int frameSide = 8;
constexpr double gap = 0.5; // points
constexpr double faintOpacity = 0.35;

/// The cells in device pixels. Each begins on a whole pixel, so that the picture isn't blurred, and
/// a fractional pitch is rounded symmetrically about the middle. The gap takes the same share of a
/// cell at every scale, if need be a part of one antialiased pixel, so that the mascot always looks
/// equally heavy.
class DeviceGrid {
public:
    /// The side of a cell, gap included, and which share of that is filled.
    DeviceGrid(double pitch, double share) : m_pitch(pitch), m_share(share) {}

    int side() const { return 2 * offset(frameSide / 2); }

    QRectF filled(int row, int column) const {
        const QRect cell(QPoint(edge(column), edge(row)),
                         QPoint(edge(column + 1) - 1, edge(row + 1) - 1));
        return {cell.topLeft(), QSizeF(cell.size()) * m_share};
    }

private:
    int offset(int cells) const { return static_cast<int>(std::floor(cells * m_pitch)); }

    int edge(int index) const {
        const int fromMiddle = index - frameSide / 2;
        return side() / 2 + (fromMiddle < 0 ? -offset(-fromMiddle) : offset(fromMiddle));
    }

    double m_pitch;
    double m_share;
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

void PixelFrameView::setOutlined(bool outlined) {
    if (outlined != m_outlined) {
        m_outlined = outlined;
        update();
    }
}

bool PixelFrameView::isLit(int row, int column) const {
    return row >= 0 && row < m_frame.rows.size() && column >= 0 &&
           column < m_frame.rows[row].size() && m_frame.rows[row][column] != u'.';
}

/// Draws an edge one device pixel wide, inside the cell, where no other cell is beside it.
void PixelFrameView::paintEdges(QPainter &painter, int row, int column,
                                const QRectF &filled) const {
    const auto edge = [&](bool isOpen, const QRectF &line) {
        if (isOpen) {
            painter.fillRect(line, m_color);
        }
    };
    const QSizeF across(filled.width(), 1);
    const QSizeF along(1, filled.height());
    edge(!isLit(row - 1, column), {filled.topLeft(), across});
    edge(!isLit(row + 1, column), {filled.bottomLeft() - QPointF(0, 1), across});
    edge(!isLit(row, column - 1), {filled.topLeft(), along});
    edge(!isLit(row, column + 1), {filled.topRight() - QPointF(1, 0), along});
}

void PixelFrameView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QTransform toDevice = painter.deviceTransform();
    const DeviceGrid grid(m_pixelSize * toDevice.m11(), (m_pixelSize - gap) / m_pixelSize);
    const QRectF place = toDevice.mapRect(QRectF(rect()));
    const QPoint origin(qRound(place.center().x() - grid.side() / 2.0),
                        qRound(place.center().y() - grid.side() / 2.0));
    painter.setTransform(toDevice.inverted(), true);
    painter.translate(origin);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int row = 0; row < m_frame.rows.size(); ++row) {
        const QString &cells = m_frame.rows[row];
        for (int column = 0; column < cells.size(); ++column) {
            if (cells[column] == u'.') {
                continue;
            }
            const bool isFaint = cells[column] == u'o';
            const QRectF filled = grid.filled(row, column);
            painter.fillRect(filled, Colors::faded(m_color, isFaint ? faintOpacity : 1));
            if (isFaint && m_outlined) {
                paintEdges(painter, row, column, filled);
            }
        }
    }
}

} // namespace morvane

#include "moc_PixelFrameView.cpp"
