#include "Presentation/Notch/NotchGeometry.h"

#include "Platform/Displays.h"

#include <gtest/gtest.h>

#include <array>

namespace morvane {
namespace {

struct Case {
    const char *what;
    QRect frame;
    int visibleHeight;
    int inset;
    std::optional<QSize> left;
    std::optional<QSize> right;
    QSize notch;
    int budget;
    QRect stage;
    QRectF zone;
};

const QList<Case> cases{
    {"a notch between two areas",
     {0, 0, 1000, 800},
     770,
     32,
     {{400, 32}},
     {{400, 32}},
     {200, 32},
     492,
     {165, 0, 670, 579},
     {388, 0, 224, 36}},
    {"an area higher than the inset",
     {0, 0, 1000, 800},
     770,
     32,
     {{400, 38}},
     {{400, 32}},
     {200, 38},
     486,
     {165, 0, 670, 579},
     {388, 0, 224, 36}},
    {"only one area known",
     {0, 0, 1000, 800},
     770,
     32,
     {{400, 38}},
     {},
     {220, 32},
     492,
     {165, 0, 670, 579},
     {378, 0, 244, 36}},
    {"a tiny notch on a low display",
     {0, 0, 1000, 400},
     370,
     20,
     {{450, 20}},
     {{450, 20}},
     {160, 30},
     240,
     {165, 0, 670, 325},
     {408, 0, 184, 30}},
    {"a wide notch on a high display",
     {0, 0, 1400, 1600},
     1570,
     40,
     {{450, 40}},
     {{450, 40}},
     {500, 40},
     820,
     {334, 0, 732, 915},
     {438, 0, 524, 44}},
    {"a display of odd width elsewhere",
     {1000, -200, 1001, 800},
     770,
     32,
     {{400, 32}},
     {{400, 32}},
     {201, 32},
     492,
     {1166, -200, 670, 579},
     {1388, -200, 225, 36}},
};

TEST(NotchGeometry, FollowsFromTheDisplay) {
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.what);
        QRect visible = expected.frame;
        visible.setTop(visible.bottom() + 1 - expected.visibleHeight);
        const Display display{
            1, expected.frame, visible, true, expected.inset, expected.left, expected.right};
        EXPECT_EQ(NotchGeometry::hardwareNotchSize(display), expected.notch);
        EXPECT_EQ(NotchGeometry::contentHeightBudget(display), expected.budget);
        EXPECT_EQ(NotchGeometry::stageFrame(display), expected.stage);
        EXPECT_EQ(NotchGeometry::hoverZone(display), expected.zone);
    }
}

TEST(NotchGeometry, TheShellHasRoomForWhatItHolds) {
    EXPECT_EQ(NotchGeometry::compactShellSize({200, 32}), QSize(392, 32));
    EXPECT_EQ(NotchGeometry::expandedShellSize({200, 32}, {520, 100}), QSize(550, 147));
    EXPECT_EQ(NotchGeometry::expandedShellSize({500, 32}, {520, 100}), QSize(692, 147));
}

} // namespace
} // namespace morvane
