#include "Presentation/PresenterFixture.h"

namespace morvane {
namespace {

class NotchPresenterTest : public PresenterFixture {
protected:
    NotchPresenterTest() { settings.setShowWhenIdle(true); }

    bool isCompact() {
        const QRect shape = window().shape.boundingRect();
        return shape.height() == 32 && QRect(139, 0, 392, 32).contains(shape);
    }
};

TEST_F(NotchPresenterTest, OpensWhereThePointerRestsAndClosesAfterItHasLeft) {
    attachNotch();
    scheduler.advance(Seconds(1));
    EXPECT_EQ(window().geometry, QRect(165, 0, 670, 579));
    EXPECT_EQ(window().opacity(), 1);
    EXPECT_TRUE(isCompact());

    movePointer(onTab);
    EXPECT_EQ(expansionsAfter(Seconds(0.34)), QList<bool>());
    EXPECT_EQ(expansionsAfter(Seconds(0.02)), QList<bool>({true}));
    EXPECT_FALSE(isCompact());
    movePointer(onPanelOnly);
    EXPECT_EQ(expansionsAfter(Seconds(5)), QList<bool>({true}));

    movePointer(elsewhere);
    EXPECT_EQ(expansionsAfter(Seconds(0.39)), QList<bool>({true}));
    EXPECT_EQ(expansionsAfter(Seconds(0.02)), QList<bool>({true, false}));
    EXPECT_TRUE(isCompact());
    scheduler.advance(Seconds(1));
    EXPECT_EQ(window().resizes, 1);
    EXPECT_EQ(ticksWithin(Seconds(50)), 0);

    // Closed on purpose, it opens only under a pointer that comes back and rests.
    movePointer(onTab);
    scheduler.advance(Seconds(1));
    presenter->collapseExpanded();
    movePointer(onTab + QPoint(1, 0));
    EXPECT_EQ(expansionsAfter(Seconds(2)), QList<bool>({true, false, true, false}));
    movePointer(elsewhere);
    movePointer(onTab);
    EXPECT_EQ(expansionsAfter(Seconds(1)), QList<bool>({true, false, true, false, true}));
}

TEST_F(NotchPresenterTest, WhatWasPresentedStaysShutUnderAPointerThatRests) {
    displays.setPointer(onTab);
    attachNotch();
    presenter->presentPanel();
    EXPECT_EQ(expansionsAfter(Seconds(10.5)), QList<bool>({true, false}));
    apply(Event::promptSubmit);
    EXPECT_EQ(expansionsAfter(Seconds(1)), QList<bool>({true, false}));
    EXPECT_TRUE(isCompact());
}

TEST_F(NotchPresenterTest, IsThereWhileThereIsSomethingToTell) {
    settings.setShowWhenIdle(false);
    attachNotch();
    EXPECT_FALSE(isVisible());
    apply(Event::promptSubmit);
    EXPECT_TRUE(isVisibleAfter(Seconds(0)));
    apply(Event::sessionEnd);
    EXPECT_FALSE(isVisibleAfter(Seconds(0)));

    // The hover zone works without a window, and what it opened goes when the pointer leaves.
    movePointer(onTab);
    EXPECT_TRUE(isVisibleAfter(Seconds(0.7)));
    apply(Event::sessionStart);
    EXPECT_TRUE(isVisibleAfter(Seconds(1)));
    movePointer(elsewhere);
    EXPECT_FALSE(isVisibleAfter(Seconds(0.5)));
    EXPECT_EQ(expansions, QList<bool>({true, false}));

    // A dismissal ends where the pointer comes back and rests.
    settings.setShowWhenIdle(true);
    EXPECT_TRUE(isVisibleAfter(Seconds(0)));
    presenter->dismiss();
    EXPECT_FALSE(isVisibleAfter(Seconds(1)));
    movePointer(elsewhere);
    movePointer(onTab);
    EXPECT_TRUE(isVisibleAfter(Seconds(0.4)));
}

TEST_F(NotchPresenterTest, FollowsItsDisplayAndEndsWithIt) {
    attachNotch();
    EXPECT_EQ(pointer.users, 1);
    presenter->presentPanel();
    presenter->attach(FakeDisplays::notched(1, 1000));
    EXPECT_EQ(window().geometry, QRect(1165, 0, 670, 579));
    EXPECT_EQ(pointer.users, 1);

    presenter->detach();
    EXPECT_EQ(overlays.alive.size(), 0);
    EXPECT_EQ(pointer.users, 0);
    EXPECT_EQ(expansions, QList<bool>({true, false}));
    movePointer(onTab);
    apply(Event::promptSubmit);
    scheduler.advance(Seconds(200));
    EXPECT_EQ(overlays.alive.size(), 0);
}

} // namespace
} // namespace morvane
