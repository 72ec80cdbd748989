#include "Presentation/Mascot/MenuBarIcon.h"

#include "Support/Printing.h"

#include <QColor>
#include <QPixmap>

namespace morvane {
namespace {

/// What is drawn, read back as rows of characters from the middle of every square.
QString read(const QImage &image, double pixelsToASquare) {
    QString result;
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 11; ++column) {
            const QPoint middle(static_cast<int>((column + 0.5) * pixelsToASquare),
                                static_cast<int>((row + 0.5) * pixelsToASquare));
            result +=
                image.pixelColor(middle) == QColor(Qt::red) ? QLatin1Char('X') : QLatin1Char('.');
        }
        result += QLatin1Char('\n');
    }
    return result;
}

constexpr const char *picture = "..X.....X..\n"
                                "...X...X...\n"
                                "..XXXXXXX..\n"
                                ".XX.XXX.XX.\n"
                                "XXXXXXXXXXX\n"
                                "X.XXXXXXX.X\n"
                                "X.X.....X.X\n"
                                "...XX.XX...\n";

TEST(MenuBarIcon, IsDrawnWithoutGapsAtAnyScale) {
    const QImage image = MenuBarIcon::draw(Qt::red, 5);
    EXPECT_EQ(read(image, 9.5), picture);
    // The body is one whole: no line shows where two squares meet within a pixel.
    for (int x = 0; x < 104; ++x) {
        EXPECT_EQ(image.pixelColor(x, 42), QColor(Qt::red)) << x;
    }
}

TEST(MenuBarIcon, HasWholePixelsAtTheSizesOfPanels) {
    const QIcon icon = MenuBarIcon::icon(Qt::red, {});
    for (const QSize size : {QSize(22, 16), QSize(33, 24), QSize(44, 32)}) {
        const QSize square(size.width(), size.width());
        ASSERT_TRUE(icon.availableSizes().contains(square));
        const QImage image = icon.pixmap(square).toImage().copy(
            QRect(QPoint(0, (square.height() - size.height()) / 2), size));
        EXPECT_EQ(read(image, size.width() / 11), picture);
        for (int x = 0; x < size.width(); ++x) {
            const int alpha = image.pixelColor(x, 0).alpha();
            EXPECT_TRUE(alpha == 0 || alpha == 255) << x;
        }
    }
}

/// So that a person who doesn't see its colors can tell one from another.
TEST(MenuBarIcon, TellsEveryStateByItsShapeAlone) {
    QList<QImage> shapes;
    for (const SessionState state : {SessionState::idle, SessionState::working, SessionState::done,
                                     SessionState::failed, SessionState::needsInput}) {
        const QImage shape = MenuBarIcon::icon(Qt::red, state).pixmap(22, 22).toImage();
        for (const QImage &other : shapes) {
            int differing = 0;
            for (int y = 0; y < shape.height(); ++y) {
                for (int x = 0; x < shape.width(); ++x) {
                    const QPoint pixel(x, y);
                    differing += std::abs(shape.pixelColor(pixel).alpha() -
                                          other.pixelColor(pixel).alpha()) > 127;
                }
            }
            EXPECT_GE(differing, 25) << static_cast<int>(state); // of the hundred of a mark
        }
        shapes << shape;
    }
}

} // namespace
} // namespace morvane
