#pragma once

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <functional>

namespace morvane {

/// Paints on a transparent image, with this ratio of device pixels to points.
inline QImage scaledImage(QSize points, double ratio,
                          const std::function<void(QPainter &)> &painting) {
    QImage image(QSize(qCeil(points.width() * ratio), qCeil(points.height() * ratio)),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painting(painter);
    return image;
}

/// A widget without the background behind it.
inline QImage scaledImage(QWidget &widget, double ratio) {
    return scaledImage(widget.size(), ratio, [&](QPainter &painter) {
        widget.render(&painter, {}, {}, QWidget::DrawChildren);
    });
}

/// How opaque each pixel of an image is, row by row.
inline QList<int> alphas(const QImage &image) {
    QList<int> result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            result.append(image.pixelColor(x, y).alpha());
        }
    }
    return result;
}

/// The part of an image, in its pixels, that is not empty.
inline QRect paintedPart(const QImage &image) {
    QRect result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 0) {
                result |= QRect(x, y, 1, 1);
            }
        }
    }
    return result;
}

} // namespace morvane
