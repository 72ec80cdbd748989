#include "Platform/Linux/X11/CoveredPixels.h"

#include <QPainterPath>
#include <QRegion>
#include <gtest/gtest.h>

#include <cmath>

namespace morvane {
namespace {

TEST(CoveredPixelsTest, AreRoundToTheDevicePixelAndTheSameOnBothSides) {
    QPainterPath path;
    path.addRoundedRect(QRectF(4, 2, 40, 40), 20, 20);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        QRegion disc;
        for (const QRect &rect : coveredPixels(path, ratio)) {
            EXPECT_FALSE(disc.intersects(rect));
            disc += rect;
        }
        disc.translate(static_cast<int>(-4 * ratio), static_cast<int>(-2 * ratio));
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
