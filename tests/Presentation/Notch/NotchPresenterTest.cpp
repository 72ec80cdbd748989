#include "Presentation/PresenterFixture.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

class NotchPresenterTest : public PresenterFixture {
protected:
    bool isCompact() {
        const QRect shape = window().shape.boundingRect();
        return shape.height() == 32 && QRect(139, 0, 392, 32).contains(shape);
    }
};

TEST_F(NotchPresenterTest, OpensWhereThePointerRestsAndClosesAfterItHasLeft) {
    settings.setShowWhenIdle(true);
    attachNotch();
    scheduler.advance(Seconds(1));
    EXPECT_EQ(window().geometry, QRect(165, 0, 670, 579));
    EXPECT_EQ(window().opacity(), 1);
    EXPECT_TRUE(isCompact());

    movePointer(onTab);
    scheduler.advance(Seconds(0.34));
    EXPECT_EQ(expansions, QList<bool>());
    scheduler.advance(Seconds(0.02));
    EXPECT_EQ(expansions, QList<bool>({true}));
    EXPECT_FALSE(isCompact());
    movePointer(onPanelOnly);
    scheduler.advance(Seconds(5));
    EXPECT_EQ(expansions, QList<bool>({true}));

    movePointer(elsewhere);
    scheduler.advance(Seconds(0.39));
    EXPECT_EQ(expansions, QList<bool>({true}));
    scheduler.advance(Seconds(0.02));
    EXPECT_EQ(expansions, QList<bool>({true, false}));
    EXPECT_TRUE(isCompact());
    scheduler.advance(Seconds(1));
    EXPECT_EQ(window().resizes, 1);
    EXPECT_EQ(ticksWithin(Seconds(50)), 0);
}

TEST_F(NotchPresenterTest, JustClosedItLetsThePointerPass) {
    settings.setShowWhenIdle(true);
    attachNotch();
    movePointer(onTab);
    scheduler.advance(Seconds(1));
    movePointer(elsewhere);
    scheduler.advance(Seconds(0.41));
    EXPECT_EQ(expansions, QList<bool>({true, false}));
    movePointer(onTab);
    scheduler.advance(Seconds(0.6));
    EXPECT_EQ(expansions, QList<bool>({true, false}));
    scheduler.advance(Seconds(0.1));
    EXPECT_EQ(expansions, QList<bool>({true, false, true}));
}

TEST_F(NotchPresenterTest, WaitsForNothingOnceThePointerHasPassed) {
    settings.setShowWhenIdle(true);
    attachNotch();
    scheduler.advance(Seconds(1));
    const std::size_t before = scheduler.timers();
    movePointer(onTab);
    EXPECT_GT(scheduler.timers(), before);
    movePointer(elsewhere);
    EXPECT_EQ(scheduler.timers(), before);
}

TEST_F(NotchPresenterTest, IsThereWhileThereIsSomethingToTell) {
    attachNotch();
    EXPECT_FALSE(isVisible());
    apply(Event::promptSubmit);
    settle();
    EXPECT_TRUE(isVisible());
    apply(Event::sessionEnd);
    settle();
    EXPECT_FALSE(isVisible());

    // The zone is there without a window, and what it opened goes with the pointer.
    movePointer(onTab);
    scheduler.advance(Seconds(0.7));
    EXPECT_TRUE(isVisible());
    apply(Event::sessionStart);
    scheduler.advance(Seconds(1));
    EXPECT_TRUE(isVisible());
    movePointer(elsewhere);
    scheduler.advance(Seconds(0.5));
    EXPECT_FALSE(isVisible());
    EXPECT_EQ(expansions, QList<bool>({true, false}));
}

TEST_F(NotchPresenterTest, ADismissalEndsWhereThePointerComesBackAndRests) {
    settings.setShowWhenIdle(true);
    attachNotch();
    presenter->dismiss();
    movePointer(elsewhere);
    scheduler.advance(Seconds(1));
    movePointer(elsewhere);
    movePointer(onTab);
    scheduler.advance(Seconds(0.4));
    EXPECT_TRUE(isVisible());
}

TEST_F(NotchPresenterTest, CollapsedUnderThePointerItStaysClosedUntilThatComesBack) {
    settings.setShowWhenIdle(true);
    attachNotch();
    movePointer(onTab);
    scheduler.advance(Seconds(1));
    presenter->collapseExpanded();
    presenter->collapseExpanded();
    for (int step = 0; step < 20; ++step) {
        movePointer(onTab + QPoint(step, 0));
        scheduler.advance(Seconds(0.1));
    }
    EXPECT_EQ(expansions, QList<bool>({true, false}));
    EXPECT_TRUE(isVisible());
    movePointer(elsewhere);
    movePointer(onTab);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(expansions, QList<bool>({true, false, true}));
}

TEST_F(NotchPresenterTest, FollowsItsDisplayAndEndsWithIt) {
    settings.setShowWhenIdle(true);
    attachNotch();
    EXPECT_EQ(pointer.users, 1);
    presenter->presentPanel();
    presenter->attach(FakeDisplays::notched(1, 1000));
    EXPECT_EQ(window().geometry, QRect(1165, 0, 670, 579));
    EXPECT_EQ(pointer.users, 1);

    presenter->attach(FakeDisplays::builtin(1, 0));
    EXPECT_FALSE(isVisible());
    presenter->attach(FakeDisplays::notched(1, 0));
    EXPECT_TRUE(isVisible());

    presenter->presentPanel();
    presenter->detach();
    EXPECT_EQ(overlays.alive.size(), 0);
    EXPECT_EQ(pointer.users, 0);
    EXPECT_EQ(expansions, QList<bool>({true, false, true, false}));
    movePointer(onTab);
    apply(Event::promptSubmit);
    scheduler.advance(Seconds(200));
    EXPECT_EQ(overlays.alive.size(), 0);
}

} // namespace
} // namespace morvane
