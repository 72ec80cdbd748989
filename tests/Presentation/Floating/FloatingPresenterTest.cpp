#include "Presentation/Panel/PencilButton.h"
#include "Presentation/PresenterFixture.h"

#include <QFocusEvent>

namespace morvane {
namespace {

using FloatingPresenterTest = PresenterFixture;

TEST_F(FloatingPresenterTest, OnCallItComesForAMomentAndStaysWhileSomeoneIsAskedFor) {
    attachFloating();
    apply(Event::promptSubmit);
    EXPECT_FALSE(isVisibleAfter(Seconds(1)));
    usage.tell(95); // a milestone
    EXPECT_TRUE(isVisibleAfter(Seconds(5.9)));
    EXPECT_FALSE(isVisibleAfter(Seconds(0.3)));

    apply(Event::turnEnd);
    settle();
    EXPECT_TRUE(isVisibleAfter(Seconds(4.9)));
    EXPECT_FALSE(isVisibleAfter(Seconds(0.3)));

    apply(Event::needsInput);
    EXPECT_TRUE(isVisibleAfter(Seconds(20)));
    store.acknowledge("s");
    EXPECT_FALSE(isVisibleAfter(Seconds(0.2)));

    // A dismissal in that moment takes it away, though another session is at work.
    apply(Event::promptSubmit, "other");
    apply(Event::turnEnd);
    EXPECT_TRUE(isVisibleAfter(Seconds(0)));
    presenter->dismiss();
    EXPECT_FALSE(isVisibleAfter(Seconds(1)));
}

TEST_F(FloatingPresenterTest, AmbientItStaysWhileSessionsAreAtWork) {
    attachFloating(Flavour::ambient);
    EXPECT_FALSE(isVisible());
    apply(Event::promptSubmit);
    EXPECT_TRUE(isVisibleAfter(Seconds(30)));
    presenter->dismiss();
    EXPECT_TRUE(isVisibleAfter(Seconds(1)));
    apply(Event::turnEnd);
    EXPECT_TRUE(isVisibleAfter(Seconds(4)));
    EXPECT_FALSE(isVisibleAfter(Seconds(2)));
}

TEST_F(FloatingPresenterTest, OnCallItStandsInForATrayAsFarAsItIsTold) {
    const auto staysThoughDismissed = [&] {
        presenter->dismiss();
        return isVisibleAfter(Seconds(1));
    };
    attachFloating();
    presenter->setStandIn(StandIn::always);
    EXPECT_TRUE(isVisibleAfter(Seconds(1)));
    EXPECT_TRUE(staysThoughDismissed());

    presenter->setStandIn(StandIn::whileActive);
    EXPECT_FALSE(isVisibleAfter(Seconds(1)));
    apply(Event::promptSubmit);
    EXPECT_TRUE(isVisibleAfter(Seconds(30)));
    EXPECT_TRUE(staysThoughDismissed());

    presenter->setStandIn(StandIn::none);
    EXPECT_FALSE(isVisibleAfter(Seconds(1)));
}

TEST_F(FloatingPresenterTest, OpensUnderThePointerAndClosesAMomentAfterItHasLeft) {
    settings.setShowWhenIdle(true);
    attachFloating();
    scheduler.advance(Seconds(1));
    const int resizes = window().resizes;
    movePointer(onTab);
    EXPECT_EQ(expansions, QList<bool>({true}));
    // Enter and leave events that the change of shape brings about change nothing.
    for (int step = 0; step < 40; ++step) {
        scheduler.advance(Seconds(0.02));
        movePointer(onTab);
    }
    EXPECT_EQ(expansionsAfter(Seconds(1)), QList<bool>({true}));
    EXPECT_EQ(window().resizes, resizes + 1);
    EXPECT_EQ(window().geometry.width(), 520);
    EXPECT_EQ(window().shape.boundingRect().width(), 520);
    EXPECT_EQ(ticksWithin(Seconds(50)), 0);

    movePointer(elsewhere);
    scheduler.advance(Seconds(0.14));
    movePointer(onPanelOnly);
    EXPECT_EQ(expansionsAfter(Seconds(1)), QList<bool>({true}));
    movePointer(elsewhere);
    EXPECT_EQ(expansionsAfter(Seconds(0.16)), QList<bool>({true, false}));
    scheduler.advance(Seconds(1));
    EXPECT_EQ(window().resizes, resizes + 2);
}

TEST_F(FloatingPresenterTest, AShowDuringAHideEndsInFullSight) {
    for (const double intoTheHide : {0.0, 0.06}) {
        attachFloating();
        apply(Event::turnEnd);
        settle();
        scheduler.advance(Seconds(5 + intoTheHide));
        EXPECT_EQ(window().opacity() < 1, intoTheHide > 0);
        apply(Event::needsInput);
        scheduler.advance(Seconds(1));
        EXPECT_TRUE(isVisible());
        EXPECT_EQ(window().opacity(), 1);
        presenter.reset();
    }
}

TEST_F(FloatingPresenterTest, HangsFromTheTopOfTheWorkArea) {
    settings.setShowWhenIdle(true);
    // Below the bar of the display; only the capsule on call goes to the right.
    for (const auto &[flavour, position, middle] :
         {std::tuple(Flavour::onCall, FloatingPosition::topCenter, 500),
          std::tuple(Flavour::onCall, FloatingPosition::topRight, 0),
          std::tuple(Flavour::ambient, FloatingPosition::topRight, 500)}) {
        settings.setFloatingPosition(position);
        attachFloating(flavour);
        scheduler.advance(Seconds(1));
        const QRect frame = window().geometry;
        EXPECT_EQ(frame.top(), 30);
        EXPECT_NEAR(frame.center().x(), middle ? middle : 988 - frame.width() / 2, 1);
        presenter.reset();
    }
}

TEST_F(FloatingPresenterTest, FollowsItsDisplayAndStaysOpenAndNoWiderThanThat) {
    apply(Event::needsInput);
    settings.setFloatingPosition(FloatingPosition::topRight);
    attachFloating();
    presenter->presentPanel();
    scheduler.advance(Seconds(1));
    EXPECT_EQ(window().geometry.width(), 600);
    Display narrow = FakeDisplays::external(1, 2000);
    narrow.frame.setWidth(510);
    narrow.visibleFrame = narrow.frame.adjusted(0, 50, 0, 0);
    presenter->attach(narrow);
    EXPECT_EQ(overlays.alive.size(), 1);
    EXPECT_EQ(expansions, QList<bool>({true}));
    EXPECT_EQ(window().geometry.topLeft(), QPoint(2000, 50));
    EXPECT_EQ(window().geometry.width(), 510);
}

TEST_F(FloatingPresenterTest, AForgottenFieldHoldsThePanelForTwoMinutesAndCommitsNothing) {
    attachFloating();
    apply(EventBuilder(Event::promptSubmit).at("/srv/shop"));
    presenter->presentPanel();
    scheduler.advance(Seconds(1));
    window().widget().findChild<PencilButton *>()->click();
    settle();
    const QPointer field = window().widget().findChild<InlineNameField *>();
    field->setText("half a na");
    EXPECT_TRUE(window().hasKeyboard);
    scheduler.advance(Seconds(60));
    presenter->collapseExpanded();
    EXPECT_TRUE(isVisibleAfter(Seconds(59)));
    while (expansions.size() == 1) {
        scheduler.advance(Seconds(0.01));
    }
    // It is on its way out of sight, and the desktop may take the focus from it at any time.
    if (!window().hasKeyboard && field) {
        send(*field, QFocusEvent(QEvent::FocusOut, Qt::ActiveWindowFocusReason));
    }
    EXPECT_FALSE(isVisibleAfter(Seconds(1)));
    EXPECT_FALSE(window().hasKeyboard);
    EXPECT_EQ(renamed, QStringList());
}

} // namespace
} // namespace morvane
