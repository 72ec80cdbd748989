#include "Presentation/PixelFrameView.h"

#include "Presentation/Colors.h"

#include <QPainter>

#include <cmath>

namespace morvane {

namespace {

constexpr int frameSide = 8;
constexpr double gap = 0.5;
constexpr double faintOpacity = 0.35;

} // namespace

PixelFrameView::PixelFrameView(double pixelSize, QWidget *parent)
    : QWidget(parent), m_pixelSize(pixelSize) {
    const int side = static_cast<int>(std::ceil(frameSide * pixelSize));
    setFixedSize(side, side);
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
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = m_pixelSize - gap;
    for (qsizetype row = 0; row < m_frame.rows.size(); ++row) {
        const QString &cells = m_frame.rows[row];
        for (qsizetype column = 0; column < cells.size(); ++column) {
            if (cells[column] == u'.') {
                continue;
            }
            const double opacity = cells[column] == u'o' ? faintOpacity : 1;
            painter.fillRect(QRectF(m_pixelSize * static_cast<double>(column),
                                    m_pixelSize * static_cast<double>(row), side, side),
                             Colors::faded(m_color, opacity));
        }
    }
}

} // namespace morvane
