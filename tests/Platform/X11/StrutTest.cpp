#include "Platform/Linux/X11/Strut.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

// Two screens side by side. The right one begins below the desktop's top and ends above its bottom.
constexpr QRect leftScreen(0, 0, 1000, 800);
constexpr QRect rightScreen(1000, 200, 600, 400);
constexpr QSize desktop(1600, 800);

QRect shrunk(const QRect &screen, const QList<std::uint32_t> &items) {
    return Strut::of(items).shrink(screen, screen, desktop);
}

TEST(Strut, TakesItsDepthFromTheScreenThatItLiesOn) {
    const QList<std::uint32_t> right{0, 50, 0, 0, 0, 0, 200, 599, 0, 0, 0, 0};
    EXPECT_EQ(shrunk(rightScreen, right), QRect(1000, 200, 550, 400));
    EXPECT_EQ(shrunk(leftScreen, right), leftScreen);

    // Depths count from the desktop's edge, which may lie outside of the screen.
    const QList<std::uint32_t> rightTop{0, 0, 230, 0, 0, 0, 0, 0, 1000, 1599, 0, 0};
    EXPECT_EQ(shrunk(rightScreen, rightTop), QRect(1000, 230, 600, 370));
    EXPECT_EQ(shrunk(leftScreen, rightTop), leftScreen);
    const QList<std::uint32_t> bottom{0, 0, 0, 240, 0, 0, 0, 0, 0, 0, 0, 1599};
    EXPECT_EQ(shrunk(rightScreen, bottom), QRect(1000, 200, 600, 360));
    EXPECT_EQ(shrunk(leftScreen, bottom), QRect(0, 0, 1000, 560));
}

TEST(Strut, TakesNothingThatCannotBeMeant) {
    EXPECT_TRUE(Strut::of({0, 0, 30}).isEmpty());
    const QList<std::uint32_t> tooDeep{0, 0, 0xffffffff, 900, 0, 0, 0, 0, 0, 1599, 0, 1599};
    EXPECT_EQ(shrunk(leftScreen, tooDeep), leftScreen);
}

} // namespace
} // namespace morvane
