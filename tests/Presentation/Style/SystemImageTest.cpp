#include "Presentation/Style/SystemImage.h"

#include "Presentation/Mascot/AgentMark.h"
#include "Presentation/ScaledImage.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

constexpr int lastImage = static_cast<int>(SystemImage::terminal);

/// Checks that what is painted into a frame of this size stays inside of it and fills it fairly.
template <typename Painting>
void expectFramed(double size, double ratio, const Painting &painting) {
    const QRectF frame(3, 5, size, size);
    const QImage image = scaledImage({24, 24}, ratio, [&](QPainter &painter) {
        const QTransform before = painter.transform();
        painting(painter, frame);
        EXPECT_EQ(painter.transform(), before);
    });
    const QRect painted = paintedPart(image);
    const QRectF place(frame.topLeft() * ratio, frame.size() * ratio);
    EXPECT_TRUE(place.toAlignedRect().contains(painted)) << size << " at " << ratio;
    EXPECT_GE(std::max(painted.width(), painted.height()), size * ratio / 2);
}

TEST(SystemImage, EachStaysInsideOfItsFrameAtAnyScaleAndLeavesThePainterAsItWas) {
    for (int image = 0; image <= lastImage; ++image) {
        SCOPED_TRACE(image);
        for (const double size : {8, 9, 11, 14}) {
            for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
                expectFramed(size, ratio, [&](QPainter &painter, const QRectF &frame) {
                    paint(painter, SystemImage(image), frame, Qt::white);
                });
            }
        }
    }
}

TEST(AgentMark, EachAgentHasAMarkAndATintOfItsOwn) {
    QList<QImage> marks;
    QList<QRgb> tints;
    for (const AgentKind agent : allAgentKinds) {
        const QImage mark = scaledImage({8, 8}, 1, [&](QPainter &painter) {
            AgentMark::paint(painter, agent, {0, 0, 8, 8}, Qt::white);
        });
        EXPECT_FALSE(marks.contains(mark)) << rawValue(agent);
        EXPECT_FALSE(tints.contains(AgentMark::tint(agent).rgb())) << rawValue(agent);
        marks.append(mark);
        tints.append(AgentMark::tint(agent).rgb());
        expectFramed(8, 1.25, [&](QPainter &painter, const QRectF &frame) {
            AgentMark::paint(painter, agent, frame, Qt::white);
        });
    }
}

} // namespace
} // namespace morvane
