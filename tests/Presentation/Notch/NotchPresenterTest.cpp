#include "Presentation/Notch/NotchPresenter.h"

#include "Presentation/Panel/SessionRow.h"
#include "Presentation/PanelFixture.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

namespace morvane {
namespace {

class NotchPresenterTest : public PanelFixture {
protected:
    void attach() {
        presenter = std::make_unique<NotchPresenter>(context, displays, overlays, pointer);
        presenter->onExpandedChanged = [this](bool isExpanded) { expansions.append(isExpanded); };
        presenter->attach(FakeDisplays::notched(1, 0));
    }

    bool isVisible() { return !overlays.alive.isEmpty() && window().isVisible(); }
    bool isCompact() { return window().shape.boundingRect().height() == 32; }
    FakeOverlayWindow &window() { return *overlays.alive.first(); }

    void movePointer(QPoint position) {
        displays.setPointer(position);
        emit pointer.moved();
    }

    void rightClick(QPoint position) {
        movePointer(position);
        QContextMenuEvent click(QContextMenuEvent::Mouse, {}, position);
        QCoreApplication::sendEvent(&window().widget(), &click);
    }

    QList<bool> expansions;
    std::unique_ptr<NotchPresenter> presenter;
};

constexpr QPoint onNotch(500, 0);

TEST_F(NotchPresenterTest, OpensWhereThePointerRestsAndClosesAfterItHasLeft) {
    settings.setShowWhenIdle(true);
    attach();
    scheduler.advance(Seconds(1));
    EXPECT_EQ(window().geometry, QRect(165, 0, 670, 579));
    EXPECT_EQ(window().opacity(), 1);
    EXPECT_TRUE(isCompact());

    movePointer(onNotch);
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

TEST_F(NotchPresenterTest, IsThereWhileThereIsSomethingToTell) {
    attach();
    EXPECT_FALSE(isVisible());
    apply(Event::promptSubmit);
    settle();
    EXPECT_TRUE(isVisible());
    apply(Event::sessionEnd);
    settle();
    EXPECT_FALSE(isVisible());

    // The zone is there without a window, and what it opened goes with the pointer.
    movePointer(onNotch);
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

TEST_F(NotchPresenterTest, ADismissalHoldsUntilSomethingNewHappens) {
    settings.setShowWhenIdle(true);
    attach();
    presenter->dismiss();
    EXPECT_FALSE(isVisible());
    settings.setHideOverFullscreen(true);
    settle();
    EXPECT_FALSE(isVisible());
    movePointer(elsewhere);
    scheduler.advance(Seconds(1));
    movePointer(elsewhere);
    movePointer(onNotch);
    scheduler.advance(Seconds(0.4));
    EXPECT_TRUE(isVisible());

    presenter->dismiss();
    EXPECT_FALSE(isVisible());
    EXPECT_EQ(expansions, QList<bool>({true, false}));
    apply(Event::promptSubmit);
    settle();
    EXPECT_TRUE(isVisible());
}

TEST_F(NotchPresenterTest, OnRequestItOpensForTenSecondsOrAsLongAsSomebodyTypes) {
    attach();
    presenter->presentPanel();
    movePointer(elsewhere);
    scheduler.advance(Seconds(9.9));
    EXPECT_TRUE(isVisible());
    presenter->presentPanel();
    scheduler.advance(Seconds(9.9));
    EXPECT_EQ(expansions, QList<bool>({true}));
    scheduler.advance(Seconds(0.2));
    EXPECT_FALSE(isVisible());
    EXPECT_EQ(expansions, QList<bool>({true, false}));

    // At once, also within the lock of the closing before.
    presenter->presentPanel();
    EXPECT_TRUE(isVisible());
    editing.begin(scheduler.now());
    scheduler.advance(Seconds(119));
    EXPECT_TRUE(isVisible());
    scheduler.advance(Seconds(2));
    EXPECT_FALSE(isVisible());
}

TEST_F(NotchPresenterTest, AnOpenFieldHoldsThePanelUntilItIsClosed) {
    attach();
    movePointer(onNotch);
    scheduler.advance(Seconds(0.4));
    editing.begin(scheduler.now());
    movePointer(elsewhere);
    scheduler.advance(Seconds(60));
    EXPECT_TRUE(isVisible());
    editing.end();
    scheduler.advance(Seconds(0.5));
    EXPECT_FALSE(isVisible());
}

TEST_F(NotchPresenterTest, CollapsedUnderThePointerItStaysClosedUntilThatComesBack) {
    settings.setShowWhenIdle(true);
    attach();
    movePointer(onNotch);
    scheduler.advance(Seconds(1));
    presenter->collapseExpanded();
    presenter->collapseExpanded();
    for (int step = 0; step < 20; ++step) {
        movePointer(onNotch + QPoint(step, 0));
        scheduler.advance(Seconds(0.1));
    }
    EXPECT_EQ(expansions, QList<bool>({true, false}));
    EXPECT_TRUE(isVisible());
    movePointer(elsewhere);
    movePointer(onNotch);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(expansions, QList<bool>({true, false, true}));
}

TEST_F(NotchPresenterTest, AClickMayTakeAwayThePanelThatItWasMadeIn) {
    context.actions.onSelect = [this](const Session &) { presenter->dismiss(); };
    attach();
    apply(Event::sessionStart);
    presenter->presentPanel();
    scheduler.advance(Seconds(1));
    auto *row = window().widget().findChild<SessionRow *>();
    ASSERT_NE(row, nullptr);
    QTest::mouseClick(row, Qt::LeftButton);
    EXPECT_FALSE(isVisible());
    settle();
    EXPECT_EQ(expansions, QList<bool>({true, false}));
}

TEST_F(NotchPresenterTest, AForgottenFieldHoldsItForTwoMinutesUnderAPointerThatRestsElsewhere) {
    attach();
    movePointer(onNotch);
    scheduler.advance(Seconds(1));
    editing.begin(scheduler.now());
    movePointer(elsewhere);
    scheduler.advance(Seconds(119));
    EXPECT_EQ(expansions, QList<bool>({true}));
    scheduler.advance(Seconds(2));
    EXPECT_EQ(expansions, QList<bool>({true, false}));
}

TEST_F(NotchPresenterTest, StaysOpenWhileItsMenuIs) {
    QMenu menu;
    menu.addAction("Open");
    attach();
    presenter->contextMenu = &menu;
    presenter->presentPanel();
    rightClick(onNotch);
    ASSERT_TRUE(menu.isVisible());
    movePointer(elsewhere);
    scheduler.advance(Seconds(20));
    EXPECT_TRUE(isVisible());
    menu.close();
    scheduler.advance(Seconds(1));
    EXPECT_FALSE(isVisible());

    // What is left on screen for its menu alone goes with it.
    apply(Event::promptSubmit);
    settle();
    rightClick(onNotch);
    apply(Event::sessionEnd);
    displays.setPointer(elsewhere);
    scheduler.advance(Seconds(0.2));
    EXPECT_TRUE(isVisible());
    menu.close();
    scheduler.advance(Seconds(1));
    EXPECT_FALSE(isVisible());

    // A menu that is open when the display goes finds nobody when it closes.
    presenter->presentPanel();
    rightClick(onNotch);
    presenter.reset();
    menu.close();
    EXPECT_EQ(pointer.users, 0);
}

TEST_F(NotchPresenterTest, FollowsItsDisplayAndEndsWithIt) {
    settings.setShowWhenIdle(true);
    attach();
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
    movePointer(onNotch);
    apply(Event::promptSubmit);
    scheduler.advance(Seconds(200));
    EXPECT_EQ(overlays.alive.size(), 0);
}

TEST_F(NotchPresenterTest, GivesWayToFullScreenProgramsAsSoonAsThatIsWanted) {
    settings.setShowWhenIdle(true);
    settings.setHideOverFullscreen(false);
    attach();
    EXPECT_FALSE(window().hidesOverFullscreen);
    settings.setHideOverFullscreen(true);
    settle();
    EXPECT_TRUE(window().hidesOverFullscreen);
}

TEST_F(NotchPresenterTest, WithLessMotionEverythingIsThereAtOnce) {
    motion.setReduced(true);
    attach();
    presenter->presentPanel();
    EXPECT_EQ(window().opacity(), 1);
    EXPECT_EQ(ticksWithin(Seconds(9)), 0);
}

} // namespace
} // namespace morvane
