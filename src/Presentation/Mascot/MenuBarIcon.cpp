#include "Presentation/Mascot/MenuBarIcon.h"

#include "Presentation/Mascot/PixelFrame.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <cmath>

namespace morvane::MenuBarIcon {

namespace {

constexpr double side = 1.9; // points

const PixelFrame &frame() {
    static const PixelFrame frame{{
        QStringLiteral("..X.....X.."),
        QStringLiteral("...X...X..."),
        QStringLiteral("..XXXXXXX.."),
        QStringLiteral(".XX.XXX.XX."),
        QStringLiteral("XXXXXXXXXXX"),
        QStringLiteral("X.XXXXXXX.X"),
        QStringLiteral("X.X.....X.X"),
        QStringLiteral("...XX.XX..."),
    }};
    return frame;
}

/// All squares as one shape, so that there is no seam between two that share a pixel.
QPainterPath shape() {
    QPainterPath result;
    result.setFillRule(Qt::WindingFill);
    for (qsizetype row = 0; row < frame().rows.size(); ++row) {
        const QString &cells = frame().rows[row];
        for (qsizetype column = 0; column < cells.size(); ++column) {
            if (cells[column] == u'X') {
                result.addRect(static_cast<double>(column), static_cast<double>(row), 1, 1);
            }
        }
    }
    return result;
}

QImage paint(const QColor &color, double pixelsToASquare) {
    const QSizeF squares(static_cast<double>(frame().rows.first().size()),
                         static_cast<double>(frame().rows.size()));
    const auto pixels = [&](double count) {
        return static_cast<int>(std::ceil(count * pixelsToASquare));
    };
    QImage image(pixels(squares.width()), pixels(squares.height()),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixelsToASquare, pixelsToASquare);
    painter.fillPath(shape(), color);
    return image;
}

} // namespace

QImage draw(const QColor &color, double scale) {
    QImage image = paint(color, side * scale);
    image.setDevicePixelRatio(scale);
    return image;
}

QIcon icon(const QColor &color) {
    QIcon result;
    for (const int pixelsToASquare : {2, 3, 4, 5}) {
        result.addPixmap(QPixmap::fromImage(paint(color, pixelsToASquare)));
    }
    return result;
}

} // namespace morvane::MenuBarIcon
