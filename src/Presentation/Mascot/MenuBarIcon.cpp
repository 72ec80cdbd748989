#include "Presentation/Mascot/MenuBarIcon.h"

#include "Presentation/Mascot/PixelFrame.h"
#include "Presentation/Mascot/StateMark.h"

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

/// Elsewhere a working mascot moves. This icon stands still, so it needs a mark that tells working
/// from idle by more than the colour.
QStringList markOf(std::optional<SessionState> state) {
    if (state == SessionState::working) {
        return {QStringLiteral("XX..."), QStringLiteral("XXXX."), QStringLiteral("XXXXX"),
                QStringLiteral("XXXX."), QStringLiteral("XX...")};
    }
    return StateMark::rows(state);
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
    painter.fillPath(StateMark::shape(frame().rows), color);
    return image;
}

/// Square, like the slots for icons in a tray.
QImage paintSquare(const QColor &color, std::optional<SessionState> state, int pixelsToASquare) {
    const QImage mascot = paint(color, pixelsToASquare);
    QImage image(mascot.width(), mascot.width(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.drawImage(0, (image.height() - mascot.height()) / 2, mascot);
    const QStringList mark = markOf(state);
    if (!mark.isEmpty()) {
        const int corner = image.width() - StateMark::side * pixelsToASquare;
        // Clears a margin around the mark.
        const QRect room(QPoint(corner, corner) - QPoint(pixelsToASquare, pixelsToASquare),
                         image.size());
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillRect(room, Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.translate(corner, corner);
        painter.scale(pixelsToASquare, pixelsToASquare);
        painter.fillPath(StateMark::shape(mark), color);
    }
    return image;
}

} // namespace

QImage draw(const QColor &color, double scale) {
    QImage image = paint(color, side * scale);
    image.setDevicePixelRatio(scale);
    return image;
}

QIcon icon(const QColor &color, std::optional<SessionState> state) {
    QIcon result;
    for (const int pixelsToASquare : {2, 3, 4, 5}) {
        result.addPixmap(QPixmap::fromImage(paintSquare(color, state, pixelsToASquare)));
    }
    return result;
}

} // namespace morvane::MenuBarIcon
