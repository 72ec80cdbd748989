#include "Presentation/Notch/NotchGeometry.h"

#include "Platform/Displays.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

namespace morvane {
namespace {

/// A display with a bar of 30 points at its top, and areas of these sizes beside its notch.
Display display(const QRect &frame, int inset, QSize left, std::optional<QSize> right) {
    return {1, frame, frame.adjusted(0, 30, 0, 0), true, inset, left, right};
}

TEST(NotchGeometry, FollowsFromTheDisplay) {
    const QRect usual(0, 0, 1000, 800);
    const QSize area(400, 32);
    const QSize higher(400, 38);
    const QSize wide(450, 20);
    const QSize wideAndHigh(450, 40);
    // A display, its notch, the height that the panel's content may have, where the window is, and
    // where a pointer opens it.
    const std::tuple<const char *, Display, QSize, int, QRect, QRectF> cases[] = {
        {"an area higher than the inset", display(usual, 32, higher, area), QSize(200, 38), 486,
         QRect(165, 0, 670, 579), QRectF(388, 0, 224, 36)},
        {"only one area known", display(usual, 32, higher, {}), QSize(220, 32), 492,
         QRect(165, 0, 670, 579), QRectF(378, 0, 244, 36)},
        {"a tiny notch on a low display", display(QRect(0, 0, 1000, 400), 20, wide, wide),
         QSize(160, 30), 240, QRect(165, 0, 670, 325), QRectF(408, 0, 184, 30)},
        {"a wide notch on a high display",
         display(QRect(0, 0, 1400, 1600), 40, wideAndHigh, wideAndHigh), QSize(500, 40), 820,
         QRect(334, 0, 732, 915), QRectF(438, 0, 524, 44)},
        {"a display of odd width elsewhere", display(QRect(1000, -200, 1001, 800), 32, area, area),
         QSize(201, 32), 492, QRect(1166, -200, 670, 579), QRectF(1388, -200, 225, 36)}};
    for (const auto &[what, display, notch, budget, stage, zone] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(NotchGeometry::hardwareNotchSize(display), notch);
        EXPECT_EQ(NotchGeometry::contentHeightBudget(display), budget);
        EXPECT_EQ(NotchGeometry::stageFrame(display), stage);
        EXPECT_EQ(NotchGeometry::hoverZone(display), zone);
    }
    EXPECT_EQ(NotchGeometry::expandedShellSize({500, 32}, {520, 100}), QSize(692, 147));
    const Display narrow = display(QRect(0, 0, 500, 800), 32, QSize(150, 32), QSize(150, 32));
    const QSize content(NotchGeometry::contentWidthBudget(narrow), 100);
    EXPECT_EQ(NotchGeometry::expandedShellSize({200, 32}, content).width(), 500);
}

} // namespace
} // namespace morvane
