#include "Platform/Linux/X11/CoveredPixels.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace morvane {

namespace {

// A little less than half of 255: the painter's values for the mirrored halves of a curve differ by
// a few.
constexpr int half = 124;

QImage coverage(const QPainterPath &path, const QRect &bounds) {
    QImage image(bounds.size(), QImage::Format_Alpha8);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-bounds.topLeft());
    painter.fillPath(path, Qt::black);
    return image;
}

/// The stretches of one line that are covered, each one pixel high.
QList<QRect> runs(const QImage &image, int line) {
    QList<QRect> result;
    const uchar *pixels = image.constScanLine(line);
    int start = 0;
    for (int x = 0; x <= image.width(); ++x) {
        if (x == image.width() || pixels[x] < half) {
            if (x > start) {
                result.append(QRect(start, line, x - start, 1));
            }
            start = x + 1;
        }
    }
    return result;
}

bool isContinued(const QList<QRect> &above, const QList<QRect> &below) {
    return std::ranges::equal(above, below, [](const QRect &upper, const QRect &lower) {
        return upper.left() == lower.left() && upper.width() == lower.width();
    });
}

} // namespace

QList<QRect> coveredPixels(const QPainterPath &path, double devicePixelRatio) {
    const QPainterPath device = QTransform::fromScale(devicePixelRatio, devicePixelRatio).map(path);
    const QRect bounds = device.boundingRect().toAlignedRect();
    if (bounds.isEmpty()) {
        return {};
    }
    const QImage image = coverage(device, bounds);
    QList<QRect> result;
    QList<QRect> band = runs(image, 0);
    const auto finishBand = [&](int end) {
        for (QRect &rect : band) {
            rect.setBottom(end - 1);
            result.append(rect.translated(bounds.topLeft()));
        }
    };
    for (int line = 1; line < image.height(); ++line) {
        const QList<QRect> next = runs(image, line);
        if (!isContinued(band, next)) {
            finishBand(line);
            band = next;
        }
    }
    finishBand(image.height());
    return result;
}

} // namespace morvane
