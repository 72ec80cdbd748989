#include "Presentation/Overlay/InlineNameField.h"
#include "Presentation/Overlay/PanelSurface.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Panel/PencilButton.h"
#include "Presentation/Panel/ReplyStrip.h"
#include "Presentation/Panel/SessionRow.h"
#include "Presentation/PresenterFixture.h"

#include <QLabel>
#include <QTest>
#include <QWindow>

namespace morvane {
namespace {

/// What the notch and the capsule do alike.
class EachPresenterTest : public PresenterFixture, public testing::WithParamInterface<bool> {
protected:
    void attach() { GetParam() ? attachNotch() : attachFloating(); }
    void attachForGood() {
        settings.setShowWhenIdle(true);
        attach();
        scheduler.advance(Seconds(1));
    }
    /// Opens the panel as a press of its key does.
    void present() {
        presenter->presentPanelToKeys();
        window().widget().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window().widget()));
    }

    void finishInPane() {
        PaneLocator pane;
        pane.tmux = "%1";
        apply(EventBuilder(Event::turnEnd).with(&HookEvent::pane, pane));
    }
    /// Opens the reply field of the finished session, and types at its end.
    InlineNameField *type(const QString &text) {
        shownIn<DecideButton>(*window().widget().findChild<ReplyStrip *>()).first()->click();
        auto *field = shownIn<InlineNameField>(window().widget()).first();
        QTest::keyClick(field, Qt::Key_End);
        QTest::keyClicks(field, text);
        return field;
    }
};

INSTANTIATE_TEST_SUITE_P(, EachPresenterTest, testing::Bool(),
                         [](const auto &info) { return info.param ? "notch" : "capsule"; });

TEST_P(EachPresenterTest, OpensOnRequestForTenSeconds) {
    attach();
    presenter->presentPanel();
    movePointer(elsewhere);
    EXPECT_TRUE(isVisibleAfter(Seconds(9.9)));
    presenter->presentPanel();
    EXPECT_EQ(expansionsAfter(Seconds(9.9)), QList<bool>({true}));
    EXPECT_FALSE(isVisibleAfter(Seconds(0.5)));
    EXPECT_EQ(expansions, QList<bool>({true, false}));
    // A request opens it at once, even within the lock after the last closing.
    presenter->presentPanel();
    EXPECT_TRUE(isVisible());
}

TEST_P(EachPresenterTest, ClosesWhenThePointerHasGoneWhereNobodyTellsOfIt) {
    attachForGood();
    movePointer(onTab);
    scheduler.advance(Seconds(1));
    EXPECT_TRUE(presenter->isExpanded());
    // XWayland keeps telling the position at which it has lost the pointer.
    displays.isTold = false;
    movePointer(onTab);
    scheduler.advance(Seconds(1));
    EXPECT_FALSE(presenter->isExpanded());
}

TEST_P(EachPresenterTest, LendsTheKeyboardToWhoeverOpensItByKey) {
    attachForGood();
    presenter->presentPanel();
    EXPECT_FALSE(window().hasKeyboard);
    presenter->presentPanelToKeys();
    EXPECT_TRUE(window().hasKeyboard);
    scheduler.advance(Seconds(9.9));
    EXPECT_TRUE(window().hasKeyboard);
    scheduler.advance(Seconds(1));
    EXPECT_FALSE(window().hasKeyboard);
    EXPECT_EQ(expansions, QList<bool>({true, false}));

    present();
    presenter->collapseExpanded();
    EXPECT_FALSE(window().hasKeyboard);
    scheduler.advance(Seconds(1));

    // A screen reader needs more time to say what is in it.
    emit static_cast<PanelSurface &>(window().widget()).openRequested();
    scheduler.advance(Seconds(119));
    EXPECT_TRUE(window().hasKeyboard);
    EXPECT_TRUE(presenter->isExpanded());
    scheduler.advance(Seconds(2));
    EXPECT_FALSE(window().hasKeyboard);

    // A key press keeps the keyboard as long as a field would, wherever the pointer goes.
    present();
    QTest::keyClick(window().widget().windowHandle(), Qt::Key_Down);
    movePointer(onTab);
    movePointer(elsewhere);
    scheduler.advance(Seconds(119));
    EXPECT_TRUE(window().hasKeyboard);
    EXPECT_TRUE(presenter->isExpanded());
    scheduler.advance(Seconds(2));
    EXPECT_FALSE(window().hasKeyboard);
    EXPECT_FALSE(presenter->isExpanded());

    present();
    QWindow *keys = window().widget().windowHandle();
    QTest::keyPress(keys, Qt::Key_Escape);
    send(*keys, QFocusEvent(QEvent::FocusOut));
    present();
    QTest::keyRelease(keys, Qt::Key_Escape);
    QTest::keyPress(keys, Qt::Key_Escape);
    EXPECT_TRUE(window().hasKeyboard);
    QTest::keyRelease(keys, Qt::Key_Escape);
    EXPECT_FALSE(window().hasKeyboard);
    scheduler.advance(Seconds(1));
    EXPECT_FALSE(presenter->isExpanded());

    // When the keyboard is refused nothing looks focused, not even at the second attempt.
    present();
    QApplication::focusWidget()->clearFocus();
    window().canTakeKeyboard = false;
    presenter->presentPanelToKeys();
    EXPECT_EQ(QApplication::focusWidget(), nullptr);
}

TEST_P(EachPresenterTest, AKeyThatPressesDoesSoOnceHoweverLongItIsHeld) {
    apply(Event::promptSubmit);
    attachForGood();
    present();
    const EventCounter presses(*QApplication::focusWidget(), QEvent::KeyPress);
    QWindow *keys = window().widget().windowHandle();
    int count = 0;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Return, Qt::Key_Space}) {
        QTest::keyPress(keys, key);
        QTest::keyPress(keys, key);
        EXPECT_EQ(presses.count, ++count);
        QTest::keyRelease(keys, key);
    }
}

TEST_P(EachPresenterTest, AnOpenFieldHoldsThePanelUntilItIsClosed) {
    attachForGood();
    movePointer(onTab);
    scheduler.advance(Seconds(1));
    editing.begin(scheduler.now());
    movePointer(elsewhere);
    EXPECT_EQ(expansionsAfter(Seconds(119)), QList<bool>({true}));
    editing.end();
    EXPECT_EQ(expansionsAfter(Seconds(0.5)), QList<bool>({true, false}));
}

TEST_P(EachPresenterTest, ADismissalHoldsUntilSomethingNewHappens) {
    attachForGood();
    EXPECT_TRUE(isVisible());
    presenter->dismiss();
    EXPECT_FALSE(isVisibleAfter(Seconds(1)));
    settings.setHideOverFullscreen(true);
    EXPECT_FALSE(isVisibleAfter(Seconds(0)));
    apply(GetParam() ? Event::promptSubmit : Event::turnFailed);
    EXPECT_TRUE(isVisibleAfter(Seconds(60)));
    // The window gives way to fullscreen programs by the setting that was changed meanwhile.
    EXPECT_TRUE(window().hidesOverFullscreen);
    settings.setHideOverFullscreen(false);
    EXPECT_FALSE(window().hidesOverFullscreen);
}

TEST_P(EachPresenterTest, GoesWithAMenuThatWasLeftForAnotherProgramsWindow) {
    QMenu menu;
    QMenu *submenu = menu.addMenu("more");
    attachForGood();
    presenter->contextMenu = &menu;
    window().hearsClicks = false;
    rightClick(onTab);
    scheduler.advance(Seconds(1));
    ASSERT_TRUE(presenter->isExpanded() && menu.isVisible());
    const auto staysThoughLeft = [&](QWidget &left, QWidget &entered) {
        send(left, QEvent(QEvent::Leave));
        send(entered, QEnterEvent({}, {}, {}));
        scheduler.advance(Seconds(60));
        return menu.isVisible();
    };
    EXPECT_TRUE(staysThoughLeft(menu, *submenu));
    EXPECT_TRUE(staysThoughLeft(*submenu, window().widget()));
    send(window().widget(), QEvent(QEvent::Leave));
    scheduler.advance(Seconds(2));
    EXPECT_FALSE(menu.isVisible());
    // The desktop tells the last known position again, though the pointer isn't on the panel.
    movePointer(onTab);
    scheduler.advance(Seconds(1));
    EXPECT_FALSE(presenter->isExpanded());
    movePointer(onTab + QPoint(1, 0));
    scheduler.advance(Seconds(1));
    EXPECT_TRUE(presenter->isExpanded());
}

TEST_P(EachPresenterTest, StaysOpenWhileItsMenuIs) {
    QMenu menu;
    QAction *item = menu.addAction("Open", [this] { presenter->presentPanel(); });
    attach();
    presenter->contextMenu = &menu;
    presenter->presentPanel();
    auto *held = window().widget().findChild<QAbstractButton *>();
    held->setDown(true);
    rightClick(onTab);
    ASSERT_TRUE(menu.isVisible());
    EXPECT_FALSE(held->isDown());
    movePointer(elsewhere);
    EXPECT_EQ(expansionsAfter(Seconds(20)), QList<bool>({true}));
    menu.close();
    EXPECT_EQ(expansionsAfter(Seconds(1)), QList<bool>({true, false}));
    EXPECT_FALSE(isVisible());

    presenter->presentPanel();
    rightClick(onTab);
    movePointer(elsewhere);
    menu.setActiveAction(item);
    send(menu, QKeyEvent(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier));
    EXPECT_FALSE(menu.isVisible());
    EXPECT_EQ(expansionsAfter(Seconds(9)), QList<bool>({true, false, true}));
    scheduler.advance(Seconds(2));

    // What is on screen only because of its menu goes with the menu.
    apply(Event::needsInput);
    scheduler.advance(Seconds(6));
    rightClick(onTab);
    apply(Event::sessionEnd);
    displays.setPointer(elsewhere);
    EXPECT_TRUE(isVisibleAfter(Seconds(0.2)));
    menu.close();
    EXPECT_FALSE(isVisibleAfter(Seconds(1)));

    // A menu that outlives its presenter must not call it on closing.
    presenter->presentPanel();
    rightClick(onTab);
    presenter.reset();
    menu.close();
    EXPECT_EQ(pointer.users, 0);
}

TEST_P(EachPresenterTest, AReplyThatHasNotGoneOutOutlivesItsPanel) {
    finishInPane();
    const auto says = [this](const QString &outcome) {
        attach();
        presenter->presentPanel();
        scheduler.advance(Seconds(1));
        return textsIn<QLabel>(window().widget()).contains(outcome);
    };
    EXPECT_FALSE(says("not sent"));
    type("go");
    presenter->detach();
    settle();
    EXPECT_TRUE(says("not sent"));
    QTest::keyClick(type(" on"), Qt::Key_Return);
    EXPECT_EQ(replies, QStringList({"s: go on"}));
    presenter.reset();
    tellOutcome(false);
    EXPECT_TRUE(says("not sent"));
}

TEST_P(EachPresenterTest, EscAndAJumpGiveTheKeyboardBackThoughAReplyIsOpen) {
    finishInPane();
    attach();
    for (const bool isJump : {false, true}) {
        present();
        scheduler.advance(Seconds(1));
        type("go");
        settle();
        static_cast<PanelSurface &>(window().widget()).takeFocus();
        if (isJump) {
            presenter->dismiss();
        } else {
            QTest::keyClick(window().widget().windowHandle(), Qt::Key_Escape);
        }
        EXPECT_TRUE(overlays.alive.isEmpty() || !window().hasKeyboard);
        scheduler.advance(Seconds(1));
        EXPECT_FALSE(presenter->isExpanded());
        EXPECT_EQ(replyDrafts.text("s"), isJump ? "gogo" : "go");
    }
}

TEST_P(EachPresenterTest, AJumpKeepsTheNameThatIsBeingTyped) {
    attach();
    apply(EventBuilder(Event::promptSubmit).at("/srv/shop"));
    presenter->presentPanel();
    scheduler.advance(Seconds(1));
    window().widget().findChild<PencilButton *>()->click();
    settle();
    window().widget().findChild<InlineNameField *>()->setText("a name");
    presenter->dismiss();
    EXPECT_EQ(renamed, QStringList{"/srv/shop=a name"});
}

TEST_P(EachPresenterTest, AClickMayTakeAwayThePanelThatItWasMadeIn) {
    context.actions.onSelect = [this](const Session &) { presenter->dismiss(); };
    attach();
    apply(Event::sessionStart);
    presenter->presentPanel();
    scheduler.advance(Seconds(1));
    auto *row = window().widget().findChild<SessionRow *>();
    ASSERT_NE(row, nullptr);
    QTest::mouseClick(row, Qt::LeftButton);
    EXPECT_FALSE(isVisibleAfter(Seconds(1)));
    EXPECT_EQ(expansions, QList<bool>({true, false}));
}

TEST_P(EachPresenterTest, WithLessMotionItIsWhereItBelongsAtOnce) {
    motion.setReduced(true);
    attach();
    presenter->presentPanel();
    EXPECT_EQ(window().opacity(), 1);
    const QRect place = window().geometry;
    EXPECT_EQ(ticksWithin(Seconds(9)), 0);
    EXPECT_EQ(window().geometry, place);
    presenter->dismiss();
    EXPECT_FALSE(isVisibleAfter(Seconds(0.16)));
}

TEST_P(EachPresenterTest, PaintsOnlyWhatHasChanged) {
    attach();
    const auto happen = [this] {
        apply(EventBuilder(Event::toolUse).tool("Bash"));
        settle();
        QCoreApplication::processEvents();
    };
    for (int session = 0; session < 5; ++session) {
        apply(Event::promptSubmit, QString::number(session));
    }
    happen();
    presenter->presentPanel();
    scheduler.advance(Seconds(5));
    happen();
    const EventCounter paints(*QCoreApplication::instance(), QEvent::Paint);
    for (int event = 0; event < 20; ++event) {
        happen();
    }
    RecordProperty("paints", paints.count);
    EXPECT_LE(paints.count, 40);
}

} // namespace
} // namespace morvane
