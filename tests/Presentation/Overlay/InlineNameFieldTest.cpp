#include "Presentation/Overlay/InlineNameField.h"

#include "Presentation/Overlay/KeyablePanel.h"
#include "Presentation/PanelFixture.h"
#include "Support/AccessibleControls.h"

#include <QTest>

namespace morvane {
namespace {

class InlineNameFieldTest : public PanelFixture {
protected:
    InlineNameFieldTest() {
        panel.setOverlay(&overlay);
        panel.show();
    }

    InlineNameField &open(bool commitsOnBlur = true) {
        field =
            new InlineNameField({"old name", "session", "Rename", commitsOnBlur}, context, &panel);
        QObject::connect(field, &InlineNameField::commit, &panel,
                         [this](const QString &text) { outcomes.append("commit " + text); });
        QObject::connect(field, &InlineNameField::cancel, &panel,
                         [this] { outcomes.append("cancel"); });
        field->show();
        settle();
        return *field;
    }

    /// Nothing of the field is left, once the event that has closed it is over.
    void expectGone() {
        EXPECT_FALSE(editing.isActive(scheduler.now()));
        EXPECT_FALSE(overlay.hasKeyboard);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(field.isNull());
    }

    /// The window that asks when keys can't reach the panel.
    static QWidget *window() { return windowTitled("Rename"); }

    QStringList outcomes;
    // Declared after the outcomes: a field that is still open reports its end to them.
    KeyablePanel panel;
    FakeOverlayWindow overlay{panel, overlays.alive};
    QPointer<InlineNameField> field;
};

TEST_F(InlineNameFieldTest, ReturnCommitsWhatIsTypedOverTheSelectedName) {
    open();
    EXPECT_TRUE(editing.isActive(scheduler.now()));
    EXPECT_EQ(panel.focusWidget(), field.data());
    // Others that use the keyboard meanwhile take nothing away.
    ASSERT_TRUE(panel.beginKeyboardUse());
    panel.endKeyboardUse();
    panel.endKeyboardUse();
    EXPECT_TRUE(overlay.hasKeyboard);
    scheduler.advance(Seconds(119));
    QTest::keyClicks(field, "new");
    scheduler.advance(Seconds(119));
    EXPECT_TRUE(editing.isActive(scheduler.now()));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(outcomes, QStringList({"commit new"}));
    expectGone();
    // After the clock is set back by an hour, a field doesn't stay active for that hour.
    open();
    scheduler.setClock(Seconds(-3600));
    EXPECT_FALSE(editing.isActive(scheduler.now()));
}

TEST_F(InlineNameFieldTest, ALossOfTheFocusCommitsWhereThatIsAskedForButNotToItsOwnMenu) {
    for (const bool commits : {true, false}) {
        outcomes.clear();
        open(commits);
        send(*field, QFocusEvent(QEvent::FocusOut, Qt::PopupFocusReason));
        EXPECT_TRUE(outcomes.isEmpty());
        send(*field, QFocusEvent(QEvent::FocusOut, Qt::ActiveWindowFocusReason));
        EXPECT_EQ(outcomes, commits ? QStringList({"commit old name"}) : QStringList());
    }
}

TEST_F(InlineNameFieldTest, AClickBringsTheKeyboardBackToAFieldThatHasStayedOpen) {
    open(false);
    overlay.hasKeyboard = false;
    QTest::mouseClick(field, Qt::LeftButton);
    EXPECT_TRUE(overlay.hasKeyboard);
    field->abandon();
    expectGone();
}

TEST_F(InlineNameFieldTest, APanelThatGoesAwayCommitsNothing) {
    panel.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    QTest::keyClicks(&open(), "half a name");
    ASSERT_TRUE(field->hasFocus());
    panel.hide();
    EXPECT_EQ(outcomes, QStringList({"cancel"}));
    expectGone();
    // A field may also go before it has taken the focus.
    panel.show();
    delete new InlineNameField({"", ""}, context, &panel);
    settle();
    EXPECT_FALSE(editing.isActive(scheduler.now()));
    EXPECT_FALSE(overlay.hasKeyboard);
}

TEST_F(InlineNameFieldTest, AsksInAWindowOfItsOwnWhereKeysCantReachThePanel) {
    overlay.canTakeKeyboard = false;
    QWidget another;
    const std::pair<std::function<void(QWidget *)>, const char *> cases[] = {
        {[&](QWidget *asking) {
             EXPECT_TRUE(QTest::qWaitForWindowActive(asking));
             another.show();
             another.activateWindow();
             EXPECT_TRUE(QTest::qWaitForWindowActive(&another));
         },
         "commit new"},
        {[](QWidget *asking) { QTest::keyClick(asking->focusWidget(), Qt::Key_Escape); }, "cancel"},
        {[](QWidget *asking) { asking->close(); }, "cancel"}};
    for (const auto &[answer, outcome] : cases) {
        outcomes.clear();
        open();
        ASSERT_NE(window(), nullptr);
        scheduler.advance(Seconds(119));
        QTest::keyClicks(window()->findChild<QLineEdit *>(), "new");
        EXPECT_EQ(editing.rest(scheduler.now()), InlineEditing::lease);
        answer(window());
        EXPECT_FALSE(window()->isVisible());
        // A second answer changes nothing.
        window()->close();
        QCoreApplication::processEvents();
        EXPECT_EQ(outcomes, QStringList({outcome}));
        expectGone();
    }

    open();
    QTest::keyClicks(window()->findChild<QLineEdit *>(), "new");
    field->abandon();
    EXPECT_EQ(field->text(), "new");
    EXPECT_EQ(window(), nullptr);
    expectGone();
}

TEST_F(InlineNameFieldTest, AKeyEndsItOnceItIsLetGoAndNotIfItWasHeldFromBefore) {
    open();
    const auto outcomesAfter = [&](QEvent::Type type, Qt::Key key, bool isRepeated) {
        send(*field, QKeyEvent(type, key, Qt::NoModifier, {}, isRepeated));
        return outcomes;
    };
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        EXPECT_TRUE(outcomesAfter(QEvent::KeyPress, key, true).isEmpty());
        EXPECT_TRUE(outcomesAfter(QEvent::KeyRelease, key, false).isEmpty());
    }
    EXPECT_TRUE(outcomesAfter(QEvent::KeyPress, Qt::Key_Return, false).isEmpty());
    EXPECT_TRUE(outcomesAfter(QEvent::KeyRelease, Qt::Key_Return, true).isEmpty());
    EXPECT_TRUE(outcomesAfter(QEvent::KeyPress, Qt::Key_Return, true).isEmpty());
    EXPECT_EQ(outcomesAfter(QEvent::KeyRelease, Qt::Key_Return, false),
              QStringList({"commit old name"}));
}

TEST_F(InlineNameFieldTest, WhatAnInputMethodHasNotEndedCountsAsTyped) {
    open();
    scheduler.advance(Seconds(119));
    for (const char *text : {"な", "なま"}) {
        send(*field, QInputMethodEvent(text, {}));
    }
    EXPECT_EQ(editing.rest(scheduler.now()), InlineEditing::lease);
    // A press beside it takes the focus away, though nothing else in a panel would have it.
    QTest::mousePress(&panel, Qt::LeftButton, {}, QPoint(90, 25));
    EXPECT_EQ(outcomes, QStringList({"commit なま"}));
    send(open(), QInputMethodEvent("え", {}));
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_EQ(field->typedText(), "");

    // When the cursor moves, the preedit text is gone, though not every input method says so.
    open().deselect();
    send(*field, QInputMethodEvent("え", {}));
    EXPECT_EQ(field->typedText(), "old nameえ");
    field->home(false);
    EXPECT_EQ(field->typedText(), "old name");
}

TEST_F(InlineNameFieldTest, TheWindowThatAsksIsTheOneFieldAndStaysInSight) {
    overlay.canTakeKeyboard = false;
    const QRect screen = panel.screen()->geometry();
    const auto picture = [this] { return panel.grab().toImage(); };
    panel.setGeometry(200, 0, 400, 300);
    const QImage without = picture();
    InlineNameField &row = open();
    row.setText(" ");
    EXPECT_EQ(picture(), without);
    QTest::keyClicks(&row, "typed into the panel");
    EXPECT_EQ(row.text(), " ");

    for (const QRect &grown : {QRect(200, 0, 400, 300), QRect(150, 0, 500, 500),
                               QRect(150, 0, 500, 600), QRect(700, 0, 100, 600)}) {
        panel.setGeometry(grown);
        EXPECT_FALSE(window()->frameGeometry().intersects(grown));
        EXPECT_TRUE(screen.contains(window()->frameGeometry()));
    }
}

} // namespace
} // namespace morvane
