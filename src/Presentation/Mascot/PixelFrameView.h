#pragma once

#include "Presentation/Mascot/PixelFrame.h"

#include <QColor>
#include <QWidget>

namespace morvane {

/// Draws a pixel frame in one colour in the middle of its place, with a thin gap between the
/// pixels. Decoration: the state it shows is told in words beside it.
class PixelFrameView : public QWidget {
    Q_OBJECT

public:
    /// The side of a pixel, gap included, in points.
    PixelFrameView(double pixelSize, QWidget *parent);

    void setFrame(const PixelFrame &frame, const QColor &color);
    const PixelFrame &frame() const { return m_frame; }
    const QColor &color() const { return m_color; }

    /// Whether faint pixels get an edge in the full colour, so that a still picture isn't
    /// overlooked.
    void setOutlined(bool outlined);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool isLit(int row, int column) const;
    void paintEdges(QPainter &painter, int row, int column, const QRectF &filled) const;

    PixelFrame m_frame;
    QColor m_color;
    double m_pixelSize;
    bool m_outlined = false;
};

} // namespace morvane
