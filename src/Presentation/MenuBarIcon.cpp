#include "Presentation/MenuBarIcon.h"

#include "Presentation/PixelFrame.h"

#include <QColor>
#include <QPainter>
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

/// Whole pixels for a length of so many squares, unmoved by what is lost in a multiplication.
int pixels(qsizetype squares, double scale) {
    return static_cast<int>(std::ceil(side * static_cast<double>(squares) * scale - 1e-6));
}

} // namespace

QImage draw(const QColor &color, double scale) {
    const QList<QString> &rows = frame().rows;
    QImage image(pixels(rows.first().size(), scale), pixels(rows.size(), scale),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(scale);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (qsizetype row = 0; row < rows.size(); ++row) {
        for (qsizetype column = 0; column < rows[row].size(); ++column) {
            if (rows[row][column] == u'X') {
                painter.fillRect(QRectF(side * static_cast<double>(column),
                                        side * static_cast<double>(row), side, side),
                                 color);
            }
        }
    }
    return image;
}

QIcon icon(const QColor &color) {
    QIcon result;
    for (const int pixelsToASquare : {2, 3, 4, 5}) {
        QImage image = draw(color, pixelsToASquare / side);
        image.setDevicePixelRatio(1);
        result.addPixmap(QPixmap::fromImage(image));
    }
    return result;
}

} // namespace morvane::MenuBarIcon
