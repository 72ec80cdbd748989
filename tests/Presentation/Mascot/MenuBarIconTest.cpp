#include "Presentation/Mascot/MenuBarIcon.h"

#include "Presentation/ScaledImage.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(MenuBarIcon, HasWholePixelsAtTheSizesOfPanels) {
    const QIcon icon = MenuBarIcon::icon(Qt::red, {});
    for (const int size : {22, 33, 44}) {
        ASSERT_TRUE(icon.availableSizes().contains(QSize(size, size)));
        for (const int alpha : alphas(icon.pixmap(size, size).toImage())) {
            EXPECT_TRUE(alpha == 0 || alpha == 255) << size;
        }
    }
}

/// A person who doesn't see the colors must be able to tell the states apart.
TEST(MenuBarIcon, TellsEveryStateByItsShapeAlone) {
    QList<QList<int>> shapes;
    for (const SessionState state : {SessionState::idle, SessionState::working, SessionState::done,
                                     SessionState::failed, SessionState::needsInput}) {
        const QIcon icon = MenuBarIcon::icon(Qt::red, state);
        const QList<int> shape = alphas(icon.pixmap(22, 22).toImage());
        for (const QList<int> &other : shapes) {
            int differing = 0;
            for (int pixel = 0; pixel < 22 * 22; ++pixel) {
                differing += std::abs(shape[pixel] - other[pixel]) > 127;
            }
            EXPECT_GE(differing, 25) << static_cast<int>(state); // of the hundred pixels of a mark
        }
        shapes.append(shape);
    }
}

} // namespace
} // namespace morvane
