#include "Presentation/Mascot/PixelFrameView.h"

#include "Presentation/Mascot/PixelArt.h"
#include "Presentation/ScaledImage.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

QImage drawn(const PixelFrame &frame, double pixelSize, double ratio) {
    PixelFrameView view(pixelSize, nullptr);
    view.setFrame(frame, Qt::red);
    view.resize(view.sizeHint());
    return scaledImage(view, ratio);
}

TEST(PixelFrameView, FillsItsPlaceAndIsItsOwnMirrorImage) {
    for (const double pixelSize : {2.0, 2.5, 3.0}) {
        for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
            for (const int place : {0, 13}) {
                SCOPED_TRACE(testing::Message() << pixelSize << ' ' << ratio << ' ' << place);
                // The window around the view stays empty.
                QWidget window;
                auto *view = new PixelFrameView(pixelSize, &window);
                view->setFrame(PixelArt::alienA(), Qt::red);
                view->setGeometry(QRect(QPoint(place, place), view->sizeHint()));
                window.resize(50, 50);
                QImage image = scaledImage(window, ratio);
                // Clear the faint pixels of the gaps, which all lie on one side of their cells.
                for (int pixel = 0; pixel < image.width() * image.height(); ++pixel) {
                    const QPoint at(pixel % image.width(), pixel / image.width());
                    if (image.pixelColor(at).alpha() < 250) {
                        image.setPixel(at, 0);
                    }
                }
                const QRect painted = paintedPart(image);
                const double side = 8 * pixelSize * ratio;
                EXPECT_LE(painted.width(), side);
                EXPECT_GE(std::min(painted.width(), painted.height()), side - 3);
                EXPECT_NEAR(painted.left(), place * ratio, 1.5);
                EXPECT_NEAR(painted.top(), place * ratio, 1.5);
                const QImage picture = image.copy(painted);
                EXPECT_EQ(picture, picture.mirrored(true, false));
            }
        }
    }
}

TEST(PixelFrameView, PartsThePixelsWhereThereIsRoomAndDrawsFaintOnesFaint) {
    const auto row = [](double pixelSize, double ratio, const QString &cells) {
        return alphas(drawn({{cells}}, pixelSize, ratio)).first(qRound(2 * pixelSize * ratio));
    };
    EXPECT_EQ(row(2, 2, "XX......"), QList<int>({255, 255, 255, 0, 255, 255, 255, 0}));
    EXPECT_EQ(row(3, 1, "X?......"), QList<int>({255, 255, 127, 255, 255, 127}));
    EXPECT_EQ(row(2, 1, "Xo......"), QList<int>({255, 127, 89, 44}));
}

} // namespace
} // namespace morvane
