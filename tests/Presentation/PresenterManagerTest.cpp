#include "Presentation/PresenterManager.h"

#include "Presentation/Overlay/Announcement.h"
#include "Presentation/PanelFixture.h"

#include <QContextMenuEvent>

namespace morvane {
namespace {

class PresenterManagerTest : public PanelFixture {
protected:
    PresenterManagerTest() {
        QObject::connect(&manager, &PresenterManager::expandedChanged, &manager,
                         [this](bool isExpanded) { expansions.append(isExpanded); });
    }

    /// Where on the desktop the visible windows are, by the display's left edge.
    QList<int> shownOn() const {
        QList<int> result;
        for (const FakeOverlayWindow *window : overlays.alive) {
            if (window->isVisible()) {
                result.append(window->geometry.center().x() / 1000 * 1000);
            }
        }
        return result;
    }
    QList<int> shownOnAfter(Seconds time) {
        scheduler.advance(time);
        return shownOn();
    }

    QList<bool> expansions;
    PresenterManager manager{context, displays, overlays, pointer};
};

TEST_F(PresenterManagerTest, ShowsItselfOnTheDisplaysOfTheModeAloneHalfASecondAfterAChange) {
    const QList<Display> both{FakeDisplays::builtin(1, 0), FakeDisplays::external(2, 1000)};
    displays.setDisplays(both);
    settings.setShowWhenIdle(true);
    manager.start();
    EXPECT_EQ(shownOnAfter(Seconds(1)), QList<int>({0, 1000}));

    displays.setDisplays({});
    scheduler.advance(Seconds(0.3));
    settings.setDisplayMode(DisplayTargetMode::externalOnly);
    scheduler.advance(Seconds(0.4));
    displays.setDisplays(both);
    EXPECT_EQ(shownOnAfter(Seconds(0.4)), QList<int>({0, 1000}));
    EXPECT_EQ(shownOnAfter(Seconds(0.2)), QList<int>({1000}));

    // Without a display of the mode a request does nothing.
    displays.setDisplays({FakeDisplays::builtin(1, 0)});
    scheduler.advance(Seconds(1));
    manager.presentPanel();
    EXPECT_EQ(overlays.alive.size(), 0);
}

TEST_F(PresenterManagerTest, EachKindOfDisplayHasItsPresenterForAsLongAsItIsThere) {
    Display notched = FakeDisplays::notched(1, 0);
    displays.setDisplays(
        {notched, FakeDisplays::builtin(2, 1000), FakeDisplays::external(3, 2000)});
    QMenu menu;
    menu.addAction("Open");
    manager.setContextMenu(&menu);
    QList<bool> shown;
    QObject::connect(&manager, &PresenterManager::shownChanged, &manager,
                     [&](bool isShown) { shown.append(isShown); });
    manager.start();
    EXPECT_EQ(pointer.users, 1);
    apply(Event::promptSubmit);
    scheduler.advance(Seconds(1));
    // The capsule of the external display comes only on call, so that display stays empty.
    EXPECT_EQ(shownOn(), QList<int>({1000, 0}));

    // A display that changes its kind keeps its presenter; one that was away gets a new one.
    notched.topSafeAreaInset = 0;
    displays.setDisplays({notched});
    EXPECT_EQ(shownOnAfter(Seconds(1)), QList<int>());
    EXPECT_EQ(pointer.users, 1);
    EXPECT_EQ(shown, QList<bool>{false});
    displays.setDisplays({});
    scheduler.advance(Seconds(1));
    EXPECT_EQ(pointer.users, 0);
    displays.setDisplays({notched});
    EXPECT_EQ(shownOnAfter(Seconds(1)), QList<int>({0}));
    EXPECT_EQ(pointer.users, 0);
    EXPECT_EQ(shown, QList<bool>({false, true}));

    // The new presenter has the menu that all have.
    send(overlays.alive.first()->widget(),
         QContextMenuEvent(QContextMenuEvent::Mouse, {}, {500, 5}));
    EXPECT_TRUE(menu.isVisible());
    menu.close();

    // A panel that is open on a display is closed with it.
    manager.presentPanel();
    for (const QList<Display> &there : {QList<Display>(), {notched}}) {
        displays.setDisplays(there);
        scheduler.advance(Seconds(1));
        EXPECT_EQ(overlays.alive.size(), there.size());
        EXPECT_EQ(expansions, QList<bool>({true, false}));
    }
}

TEST_F(PresenterManagerTest, OpensUnderThePointerOrElseAnywhere) {
    displays.setDisplays({FakeDisplays::builtin(1, 0), FakeDisplays::external(2, 1000)});
    displays.setPointer({1500, 700});
    settings.setDisplayMode(DisplayTargetMode::all);
    manager.start();
    manager.presentPanel();
    EXPECT_EQ(shownOn(), QList<int>({1000}));
    displays.setPointer({500, 700});
    manager.presentPanel();
    EXPECT_EQ(shownOn().size(), 2);
    // When one of two open panels closes, the other stays.
    displays.setDisplays({FakeDisplays::builtin(1, 0)});
    scheduler.advance(Seconds(1));
    EXPECT_EQ(expansions, QList<bool>({true, true, false}));
    manager.collapseAllExpanded();
    scheduler.advance(Seconds(2));
    EXPECT_EQ(shownOn(), QList<int>());

    settings.setDisplayMode(DisplayTargetMode::builtinOnly);
    scheduler.advance(Seconds(1));
    manager.presentPanel();
    EXPECT_EQ(shownOn(), QList<int>({0}));
    EXPECT_EQ(expansions, QList<bool>({true, true, false, false, true}));
}

TEST_F(PresenterManagerTest, TellsAScreenReaderWhichSessionAsksOrIsOver) {
    displays.setDisplays({FakeDisplays::builtin(1, 0)});
    manager.start();
    const auto *said = overlays.alive.first()->widget().findChild<Announcement *>();
    apply(EventBuilder::parked("d").in("a").at("/shop"));
    EXPECT_EQ(said->accessibleName(), "shop, waiting to run Bash");
    const EventBuilder over = EventBuilder(Event::turnEnd).in("b").at("/blog");
    apply(over);
    // What asks is not cut off while it is being read out.
    EXPECT_EQ(said->accessibleName(), "shop, waiting to run Bash\nblog, done");
    store.decide("a", AgentDecision::allow());
    apply(over.with(&HookEvent::kind, Event::turnFailed));
    EXPECT_EQ(said->accessibleName(), "blog, failed");
    scheduler.advance(Seconds(6));
    apply(over.with(&HookEvent::kind, Event::promptSubmit));
    EXPECT_EQ(said->accessibleName(), "");

    // A notch that has had nothing to show before.
    displays.setDisplays({FakeDisplays::notched(2, 0)});
    apply(Event::sessionEnd, "a");
    apply(Event::sessionEnd, "b");
    scheduler.advance(Seconds(1));
    ASSERT_TRUE(overlays.alive.isEmpty());
    apply(EventBuilder::parked("d").in("c").with(&HookEvent::cwd, "/shop"));
    ASSERT_FALSE(overlays.alive.isEmpty());
    EXPECT_EQ(overlays.alive.first()->widget().findChild<Announcement *>()->accessibleName(),
              "shop, waiting to run Bash");
}

} // namespace
} // namespace morvane
