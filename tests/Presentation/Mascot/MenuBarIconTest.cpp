#include "Presentation/Mascot/MenuBarIcon.h"

#include <QPixmap>
#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(MenuBarIcon, IsOneWholeAtAnyScaleAndHasWholePixelsAtTheSizesOfPanels) {
    // No line shows where two squares meet within a pixel.
    const QImage image = MenuBarIcon::draw(Qt::red, 5);
    for (int x = 0; x < 104; ++x) {
        EXPECT_EQ(image.pixelColor(x, 42), QColor(Qt::red)) << x;
    }

    const QIcon icon = MenuBarIcon::icon(Qt::red, {});
    for (const int size : {22, 33, 44}) {
        ASSERT_TRUE(icon.availableSizes().contains(QSize(size, size)));
        const QImage drawn = icon.pixmap(size, size).toImage();
        for (int pixel = 0; pixel < size * size; ++pixel) {
            const int alpha = drawn.pixelColor(pixel % size, pixel / size).alpha();
            EXPECT_TRUE(alpha == 0 || alpha == 255) << size << ' ' << pixel;
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
            for (int pixel = 0; pixel < 22 * 22; ++pixel) {
                const QPoint at(pixel % 22, pixel / 22);
                differing +=
                    std::abs(shape.pixelColor(at).alpha() - other.pixelColor(at).alpha()) > 127;
            }
            EXPECT_GE(differing, 25) << static_cast<int>(state); // of the hundred of a mark
        }
        shapes << shape;
    }
}

} // namespace
} // namespace morvane
