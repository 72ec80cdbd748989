#pragma once

#include "Presentation/Style/SystemImage.h"

#include <QPainter>
#include <QWidget>

#include <functional>
#include <utility>

namespace morvane {

/// A picture of a fixed size, sharp at any scale. Decoration: text beside it says the same.
class PictureView : public QWidget {
    Q_OBJECT

public:
    using Paint = std::function<void(QPainter &, const QRectF &frame)>;

    PictureView(int side, Paint paint, QWidget *parent)
        : QWidget(parent), m_paint(std::move(paint)) {
        setFixedSize(side, side);
    }

    PictureView(int side, SystemImage image, const QColor &tint, QWidget *parent)
        : PictureView(
              side,
              [image, tint](QPainter &painter, const QRectF &frame) {
                  paint(painter, image, frame, tint);
              },
              parent) {}

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        m_paint(painter, rect());
    }

private:
    Paint m_paint;
};

} // namespace morvane
