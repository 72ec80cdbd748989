#include "Presentation/Notch/NotchShell.h"

#include "Presentation/Style/Spring.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(NotchBridgeShape, FlaresOutAtTheTopAndIsRoundAtTheBottom) {
    const QPainterPath path = NotchBridgeShape{6, 14}.path({100, 50, 200, 80});
    EXPECT_EQ(path.boundingRect(), QRectF(100, 50, 200, 80));
    // The middle of each curve lies a quarter of the radius from both of its tangents.
    for (const QPointF onEdge : {QPointF(104.5, 51.5), QPointF(295.5, 51.5), QPointF(106, 80),
                                 QPointF(109.5, 126.5), QPointF(290.5, 126.5), QPointF(200, 130)}) {
        const QPointF inward(onEdge.x() < 200 ? 0.1 : -0.1, -0.1);
        EXPECT_TRUE(path.contains(onEdge + inward)) << onEdge.x() << ", " << onEdge.y();
        EXPECT_FALSE(path.contains(onEdge - inward)) << onEdge.x() << ", " << onEdge.y();
    }
}

TEST(Spring, GoesAllTheWayAndOvershootsOnlyWhereItIsDampedLittle) {
    const Spring soft{Seconds(0.34), 0.86};
    const Spring hard{Seconds(0.28), 1};
    double softest = 0;
    double hardest = 0;
    for (Seconds at{0}; at < Seconds(0.6); at += Seconds(0.01)) {
        softest = std::max(softest, soft.at(at));
        EXPECT_GE(hard.at(at), hardest);
        hardest = hard.at(at);
    }
    EXPECT_GT(softest, 1.002);
    EXPECT_LT(softest, 1.01);
    for (const Spring &spring : {soft, hard}) {
        EXPECT_EQ(spring.at(Seconds(0)), 0);
        EXPECT_NEAR(spring.at(spring.response / 4), 0.45, 0.1);
        EXPECT_NEAR(spring.at(spring.settlingTime() * 0.999), 1, 0.001);
        EXPECT_EQ(spring.at(spring.settlingTime()), 1);
    }
}

} // namespace
} // namespace morvane
