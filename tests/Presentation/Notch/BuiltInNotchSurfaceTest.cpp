#include "Presentation/Notch/BuiltInNotchSurface.h"

#include "Presentation/Panel/CompactInfoView.h"
#include "Presentation/Panel/CompactStatusView.h"
#include "Presentation/Panel/ExpandedView.h"
#include "Presentation/PanelFixture.h"
#include "Presentation/ScaledImage.h"
#include "Presentation/Style/TextLabel.h"

#include <QImage>

namespace morvane {
namespace {

class BuiltInNotchSurfaceTest : public PanelFixture {
protected:
    using Mode = BuiltInNotchSurface::Mode;

    BuiltInNotchSurfaceTest() {
        surface.setAttribute(Qt::WA_TranslucentBackground);
        surface.setNotch({200, 32}, {600, 480});
        surface.resize(670, 567);
        surface.layOut(Motion::atOnce);
        surface.show();
    }

    QImage picture() { return surface.grab().toImage(); }

    BuiltInNotchSurface surface{context};
};

// A region consists of whole points, and leaves out the tips, which are thinner.
constexpr int flare = 10;

constexpr QRect compactRect(139, 0, 392, 32);

TEST_F(BuiltInNotchSurfaceTest, GrowsOutOfTheNotchAndBackAndThenRests) {
    EXPECT_EQ(surface.visibleRect(), compactRect);
    surface.setMode(Mode::expanded, Motion::animated);
    EXPECT_EQ(surface.visibleRect(), compactRect);
    EXPECT_NEAR(surface.shape().boundingRect().width(), 550, flare);
    scheduler.advance(Seconds(0.1));
    const QRect halfway = surface.visibleRect();
    EXPECT_GT(halfway.width(), 392);
    EXPECT_LT(halfway.width(), 550);

    // A reversed animation goes on from where it was.
    surface.setMode(Mode::compact, Motion::animated);
    EXPECT_EQ(surface.visibleRect(), halfway);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(surface.visibleRect(), compactRect);
    EXPECT_EQ(ticksWithin(Seconds(20)), 0);

    surface.setMode(Mode::expanded, Motion::animated);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(surface.visibleRect().width(), 550);
    EXPECT_EQ(ticksWithin(Seconds(20)), 0);

    surface.setMode(Mode::compact, Motion::atOnce);
    EXPECT_EQ(surface.visibleRect(), compactRect);
}

TEST_F(BuiltInNotchSurfaceTest, IsBlackOnNothing) {
    const QImage drawn = picture();
    EXPECT_EQ(drawn.pixelColor(335, 16), QColor(Qt::black));
    // The last two lie in rounded corners.
    for (const QPoint beside :
         {QPoint(130, 5), QPoint(141, 20), QPoint(335, 40), QPoint(145, 31), QPoint(524, 31)}) {
        EXPECT_EQ(drawn.pixelColor(beside).alpha(), 0) << beside.x() << ", " << beside.y();
        EXPECT_FALSE(surface.shape().contains(beside));
    }
}

TEST_F(BuiltInNotchSurfaceTest, TellsWhatThereIsBesideTheNotch) {
    auto &status = *surface.findChild<CompactStatusView *>();
    auto &info = *surface.findChild<CompactInfoView *>();
    const auto place = [this](const QWidget &view) {
        return QRect(view.mapTo(&surface, QPoint()), view.size());
    };
    EXPECT_TRUE(surface.findChild<ExpandedView *>()->isHidden());
    apply(Event::promptSubmit);
    scheduler.advance(Seconds(59));
    surface.refresh();
    EXPECT_EQ(status.accessibleName(), "working");
    for (const char *time : {"<1m", "1m"}) {
        EXPECT_EQ(info.time(), QString(time));
        EXPECT_LT(place(status).right(), 235);
        EXPECT_GT(place(info).left(), 434);
        EXPECT_NEAR(place(status).center().y(), 16, 1);
        EXPECT_NEAR(place(info).center().y(), 16, 1);
        EXPECT_NEAR(info.findChild<TextLabel *>()->geometry().center().x(), info.width() / 2, 1);
        scheduler.advance(Seconds(1));
    }
}

TEST_F(BuiltInNotchSurfaceTest, TheContentsFadeIntoEachOther) {
    apply(Event::promptSubmit);
    surface.refresh();
    surface.layOut(Motion::atOnce);
    const auto brightness = [this](const QRect &part) {
        const QImage all = picture().copy(part).scaled(1, 1, {}, Qt::SmoothTransformation);
        return qRed(all.pixel(0, 0));
    };
    const QRect status(150, 2, 80, 26);
    const QRect panel(100, 34, 470, 50);
    const int full = brightness(status);
    surface.setMode(Mode::expanded, Motion::animated);
    EXPECT_EQ(brightness(status), full);
    scheduler.advance(Seconds(0.07));
    EXPECT_LT(brightness(status), full);
    EXPECT_GT(brightness(status), 0);
    scheduler.advance(Seconds(0.05));
    EXPECT_EQ(brightness(status), 0);
    const int faint = brightness(panel);
    scheduler.advance(Seconds(1));
    EXPECT_GT(brightness(panel), faint);
}

} // namespace
} // namespace morvane
