// Draws the program's desktop icon, in each size and as an SVG, at build time.
// Usage: make_icons FOLDER NAME  into FOLDER, which is a theme's

#include "Presentation/Mascot/PixelArt.h"
#include "Presentation/Style/Colors.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace morvane {
namespace {

// The mascot on a dark tile, on a grid of twelve by twelve squares.
constexpr int grid = 12;
constexpr int margin = 2;    // squares around the mascot
constexpr double edge = 0.5; // squares around the tile
constexpr double corner = 2.5;
constexpr QColor ground = Colors::windowFill;

/// The mascot's lit squares, counted from the tile's top left.
QList<QRect> squares() {
    QList<QRect> result;
    const auto &rows = PixelArt::alienA().rows;
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < rows[row].size(); ++column) {
            if (rows[row][column] == u'X') {
                result.append({margin + column, margin + row, 1, 1});
            }
        }
    }
    return result;
}

/// Each square is a whole number of pixels, so that it is sharp, and the tile takes the rest.
QImage paint(int size) {
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double unit = double(size) / grid;
    const double inset = std::max(edge * unit, 0.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(image.rect()).adjusted(inset, inset, -inset, -inset),
                            corner * unit, corner * unit);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const int side = std::max((size - 2) / (grid - 2), 1);
    const int start = (size - (grid - 2 * margin) * side) / 2;
    for (const QRect &square : squares()) {
        painter.fillRect(start + (square.x() - margin) * side, start + (square.y() - margin) * side,
                         side, side, Colors::mascot);
    }
    return image;
}

QByteArray drawing() {
    const QString shape =
        QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"128\" height=\"128\" "
                       "viewBox=\"0 0 %1 %1\">\n"
                       "<rect x=\"%2\" y=\"%2\" width=\"%3\" height=\"%3\" rx=\"%4\" "
                       "fill=\"%5\"/>\n<path fill=\"%6\" d=\"")
            .arg(grid)
            .arg(edge)
            .arg(grid - 2 * edge)
            .arg(corner)
            .arg(ground.name(), Colors::mascot.name());
    QString path;
    for (const QRect &square : squares()) {
        path += QStringLiteral("M%1 %2h1v1h-1z").arg(square.x()).arg(square.y());
    }
    return (shape + path + QLatin1String("\"/>\n</svg>\n")).toUtf8();
}

bool writeAll(const QDir &theme, const QString &name) {
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QString folder = QStringLiteral("%1x%1/apps").arg(size);
        if (!theme.mkpath(folder) ||
            !paint(size).save(theme.filePath(folder + u'/' + name + QLatin1String(".png")))) {
            return false;
        }
    }
    const QString folder = QStringLiteral("scalable/apps");
    QFile file(theme.filePath(folder + u'/' + name + QLatin1String(".svg")));
    const QByteArray bytes = drawing();
    return theme.mkpath(folder) && file.open(QFile::WriteOnly) &&
           file.write(bytes) == bytes.size() && file.flush();
}

} // namespace
} // namespace morvane

int main(int argc, char **argv) {
    if (argc != 3) {
        std::fputs("usage: make_icons FOLDER NAME\n", stderr);
        return 2;
    }
    const QDir theme(QFile::decodeName(argv[1]));
    return morvane::writeAll(theme, QFile::decodeName(argv[2])) ? EXIT_SUCCESS : EXIT_FAILURE;
}
