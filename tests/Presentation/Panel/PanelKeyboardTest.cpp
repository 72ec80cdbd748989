#include "Presentation/Panel/ExpandedViewFixture.h"
#include "Presentation/Panel/InputView.h"

#include <QApplication>

namespace morvane {
namespace {

/// A panel whose window has the keyboard.
class PanelKeyboardTest : public ExpandedViewFixture {
protected:
    PanelKeyboardTest() {
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    void press(const QList<Qt::Key> &keys) {
        for (const Qt::Key key : keys) {
            QTest::keyClick(view.windowHandle(), key);
        }
    }

    /// What the keys act on.
    static QString focus() {
        const QWidget *widget = QApplication::focusWidget();
        if (const auto *row = qobject_cast<const SessionRow *>(widget)) {
            return "row " + row->session().id;
        }
        if (const auto *row = qobject_cast<const CompletedRow *>(widget)) {
            return "record " + row->record().cwd;
        }
        if (qobject_cast<const InputView *>(widget) != nullptr) {
            return "input";
        }
        return widget != nullptr ? widget->accessibleName() : "nothing";
    }
    QString focusAfter(const QList<Qt::Key> &keys) {
        press(keys);
        return focus();
    }

    bool isInSight(const QWidget &widget) const {
        return QRegion(widget.rect()).subtracted(widget.visibleRegion()).isEmpty();
    }
};

TEST_F(PanelKeyboardTest, BeginsAtTheSessionThatWaitsAndGoesThroughAllThatCanBePressed) {
    apply(EventBuilder(Event::promptSubmit).in("a").at("/a"));
    scheduler.advance(Seconds(1));
    apply(EventBuilder::parked("d").in("b").at("/b"));
    scheduler.advance(Seconds(1));
    apply(EventBuilder::parked("e").in("c").at("/c"));
    refresh();
    view.takeFocus();
    const QString first = store.sessionAwaitingDecision()->id;
    EXPECT_EQ(focus(), "row " + first);
    // Tab skips a button that can't be pressed yet.
    EXPECT_NE(focusAfter({Qt::Key_Tab, Qt::Key_Tab}), "Deny Bash in " + first);
    scheduler.advance(Seconds(0.8));
    view.takeFocus();
    EXPECT_EQ(focusAfter({Qt::Key_Tab}), "Rename " + first);
    EXPECT_EQ(focusAfter({Qt::Key_Tab}), "Deny Bash in " + first);
    EXPECT_EQ(focusAfter({Qt::Key_Right}), "Allow Bash in " + first);
    EXPECT_EQ(focusAfter({Qt::Key_Right, Qt::Key_Right}), "Always allow Bash in " + first);
    EXPECT_EQ(focusAfter({Qt::Key_Down}), first == "b" ? "row c" : "row b");
    EXPECT_EQ(focusAfter({Qt::Key_Up}), "Deny Bash in " + first);
    EXPECT_EQ(focusAfter({Qt::Key_Up, Qt::Key_Up, Qt::Key_Left}), "row " + first);
    // The row acts on the release, so that its terminal gets nothing of a held key.
    QTest::keyPress(view.windowHandle(), Qt::Key_Return);
    EXPECT_EQ(selected, QStringList());
    QTest::keyRelease(view.windowHandle(), Qt::Key_Return);
    EXPECT_EQ(selected, QStringList{first});
}

TEST_F(PanelKeyboardTest, AnswersOnlyWhatHasBeenReadAndStaysInTheRow) {
    QStringList sent;
    store.resolveDecision = [&](const QString &id, const AgentDecision &decision) {
        sent.append(id + (decision == AgentDecision::allow() ? " allow" : " other"));
    };
    apply(EventBuilder::parked("d").at("/a"));
    refresh();
    scheduler.advance(Seconds(0.8));
    view.takeFocus();
    ASSERT_EQ(focusAfter({Qt::Key_Down, Qt::Key_Right}), "Allow Bash in a");
    // When another call takes its place, the focus leaves the button.
    apply(EventBuilder::parked("e").at("/a").given(R"({"command":"rm"})"));
    refresh();
    EXPECT_EQ(focusAfter({Qt::Key_Return}), "row s");
    EXPECT_EQ(selected, QStringList());
    EXPECT_EQ(sent, QStringList{"d other"});
    scheduler.advance(Seconds(0.8));
    press({Qt::Key_Down, Qt::Key_Right, Qt::Key_Return});
    EXPECT_EQ(sent, (QStringList{"d other", "e allow"}));
    refresh();
    EXPECT_EQ(focus(), "row s");

    apply(EventBuilder::parked("f").at("/a").asking({"Which?"}));
    refresh();
    scheduler.advance(Seconds(0.8));
    EXPECT_EQ(focusAfter({Qt::Key_Down}), "Yes in a");
    press({Qt::Key_Down, Qt::Key_Space});
    EXPECT_EQ(sent.size(), 3);
}

// The focus must not go to "Always allow" in the row above.
TEST_F(PanelKeyboardTest, StaysInTheRowWhenWhatItIsOnGoes) {
    const auto below = EventBuilder::parked("d").in("a").at("/a");
    const std::tuple<QString, HookEvent, std::function<void()>> cases[] = {
        {"Yes in a", below.asking({"Which way?", "How far?"}), [this] { press({Qt::Key_Return}); }},
        {"1 subagent",
         EventBuilder(Event::toolUse).in("a").with(&HookEvent::launchesSubagent, true),
         [this] { apply(Event::promptSubmit, "a"); }},
        {"+ 4 lines",
         below.with(&HookEvent::toolDetail, "0").given(R"({"command":"0\n1\n2\n3\n4"})"),
         [&] { apply(below.given(R"({"command":"ls"})")); }},
    };
    for (const auto &[stop, shown, change] : cases) {
        SCOPED_TRACE(stop.toStdString());
        apply(EventBuilder(Event::promptSubmit).in("a").at("/a"));
        apply(shown);
        scheduler.advance(Seconds(1));
        apply(EventBuilder::parked("e").in("b").at("/b"));
        ASSERT_EQ(order(), "ba");
        scheduler.advance(Seconds(0.8));
        view.takeFocus();
        for (int step = 0; step < 9 && focus() != stop; ++step) {
            press({Qt::Key_Down});
        }
        ASSERT_EQ(focus(), stop);
        change();
        refresh();
        EXPECT_EQ(focus(), "row a");
        apply(Event::sessionEnd, "a");
        apply(Event::sessionEnd, "b");
    }
}

TEST_F(PanelKeyboardTest, ReadsTheWholeOfACall) {
    const std::string lines = QString("line\\n").repeated(60).toStdString();
    apply(EventBuilder::parked("d")
              .with(&HookEvent::toolDetail, "line line")
              .given(R"({"command":")" + lines + R"("})"));
    refresh();
    view.takeFocus();
    ASSERT_TRUE(focusAfter({Qt::Key_Down}).startsWith("+ "));
    press({Qt::Key_Return});
    refresh();
    ASSERT_EQ(focus(), "input");
    // The keys scroll the input to its end before they leave it.
    EXPECT_EQ(focusAfter({Qt::Key_PageDown}), "input");
    press({Qt::Key_End});
    scheduler.advance(Seconds(0.8));
    press({Qt::Key_Down});
    EXPECT_TRUE(focus().startsWith("Deny")) << focus().toStdString();
    EXPECT_EQ(focusAfter({Qt::Key_Up}), "input");
    EXPECT_EQ(focusAfter({Qt::Key_Up}), "input");
    EXPECT_EQ(focusAfter({Qt::Key_Home, Qt::Key_Up}), "row s");
}

TEST_F(PanelKeyboardTest, ReachesTheFooterFromTheEndOfTheList) {
    int refreshes = 0;
    PanelContext refreshing = context;
    refreshing.actions.onRefreshUsage = [&] { ++refreshes; };
    ExpandedView other(refreshing, &view);
    settings.setUsageEnabled(true);
    usage.tell(40);
    work(30);
    other.setContentHeightBudget(300);
    other.refresh();
    other.resize(other.sizeHint());
    view.resize(other.size());
    other.show();
    other.takeFocus();
    for (int step = 0; step < 29; ++step) {
        press({Qt::Key_Down});
        EXPECT_TRUE(isInSight(*QApplication::focusWidget()));
    }
    const QString last = focus();
    EXPECT_TRUE(last.startsWith("row "));
    EXPECT_EQ(focusAfter({Qt::Key_Down}), "Claude limits");
    EXPECT_EQ(focusAfter({Qt::Key_Right, Qt::Key_Right}), "Refresh usage now");
    press({Qt::Key_Return, Qt::Key_Space});
    EXPECT_EQ(refreshes, 2);
    EXPECT_EQ(focusAfter({Qt::Key_Left, Qt::Key_Return}), "Session contexts");
    EXPECT_EQ(other.findChild<UsageBars *>()->current(), UsageBars::Tab::sessions);
    EXPECT_EQ(focusAfter({Qt::Key_Up}), last);
}

TEST_F(PanelKeyboardTest, RenamesAndGoesOnFromThere) {
    apply(EventBuilder(Event::promptSubmit).at("/shop"));
    refresh();
    view.takeFocus();
    press({Qt::Key_Right, Qt::Key_Return});
    settle();
    ASSERT_NE(qobject_cast<InlineNameField *>(QApplication::focusWidget()), nullptr);
    press({Qt::Key_X, Qt::Key_Return});
    EXPECT_EQ(renamed, QStringList{"/shop=x"});
    refresh();
    EXPECT_EQ(focus(), "Rename shop");
    EXPECT_EQ(focusAfter({Qt::Key_Left}), "row s");
}

TEST_F(PanelKeyboardTest, GoesOnAtTheNextRowThatStays) {
    work(6);
    const QString shown = order();
    view.takeFocus();
    ASSERT_EQ(focusAfter({Qt::Key_Down, Qt::Key_Down}), QString("row ") + shown[2]);
    for (const QChar id : shown.first(3)) {
        apply(Event::sessionEnd, id);
    }
    refresh();
    EXPECT_EQ(focus(), QString("row ") + shown[3]);
    // Where no row follows, the one before gets the focus.
    press({Qt::Key_Down, Qt::Key_Down});
    apply(Event::sessionEnd, shown[5]);
    refresh();
    EXPECT_EQ(focus(), QString("row ") + shown[4]);
    apply(Event::sessionEnd, shown[3]);
    apply(Event::turnEnd, shown[4]);
    refresh();
    EXPECT_TRUE(focus().startsWith("record ")) << focus().toStdString();
}

TEST_F(PanelKeyboardTest, OpensWhatHasFinishedAndStaysWithWhoeverBeginsToWait) {
    finish("/over");
    refresh();
    scheduler.advance(Seconds(0.8));
    view.takeFocus();
    press({Qt::Key_Return});
    EXPECT_EQ(reopened, QStringList{"/over"});

    work(30);
    view.setContentHeightBudget(300);
    refresh();
    view.takeFocus();
    ASSERT_EQ(focusAfter(QList<Qt::Key>(30, Qt::Key_Down)), "record /over");
    apply(EventBuilder::parked("d").in("7").at("7"));
    refresh();
    EXPECT_TRUE(isInSight(*rows().first()));
    EXPECT_EQ(rows().first()->session().id, "7");
}

TEST_F(PanelKeyboardTest, FollowsTheFocusThatAnUpdateMoves) {
    work(30);
    view.setContentHeightBudget(300);
    refresh();
    view.takeFocus();
    press(QList<Qt::Key>(15, Qt::Key_Down));
    scroll(0, 30);
    EXPECT_FALSE(isInSight(*QApplication::focusWidget()));
    apply(Event::sessionEnd, focus().section(' ', 1));
    refresh();
    EXPECT_TRUE(isInSight(*QApplication::focusWidget()));
}

} // namespace
} // namespace morvane
