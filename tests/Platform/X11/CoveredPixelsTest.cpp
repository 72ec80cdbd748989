#include "Platform/Linux/X11/CoveredPixels.h"

#include <QPainterPath>
#include <QRegion>
#include <gtest/gtest.h>

#include <cmath>

namespace morvane {
namespace {

QRegion covered(const QPainterPath &path, double ratio) {
    QRegion result;
    for (const QRect &rect : coveredPixels(path, ratio)) {
        EXPECT_FALSE(result.intersects(rect));
        result += rect;
    }
    return result;
}

TEST(CoveredPixelsTest, AnEdgeLiesOnTheNearestPixel) {
    QPainterPath path;
    path.addRect(1, 0, 10, 5);
    EXPECT_EQ(covered(path, 1), QRegion(1, 0, 10, 5));
    EXPECT_EQ(covered(path, 1.25), QRegion(1, 0, 13, 6));
    EXPECT_EQ(covered(path, 2), QRegion(2, 0, 20, 10));
    EXPECT_EQ(covered({}, 2), QRegion());
}

TEST(CoveredPixelsTest, ACornerIsRoundToTheDevicePixelAndTheSameOnBothSides) {
    QPainterPath path;
    path.addRoundedRect(QRectF(0, 0, 40, 40), 20, 20);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const QRegion disc = covered(path, ratio);
        const int size = static_cast<int>(40 * ratio);
        const double radius = size / 2.0;
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                const double distance = std::hypot(x + 0.5 - radius, y + 0.5 - radius);
                if (std::abs(distance - radius) > 0.2) {
                    EXPECT_EQ(disc.contains(QPoint(x, y)), distance < radius) << x << ' ' << y;
                }
                EXPECT_EQ(disc.contains(QPoint(x, y)), disc.contains(QPoint(size - 1 - x, y)));
            }
        }
    }
}

} // namespace
} // namespace morvane
