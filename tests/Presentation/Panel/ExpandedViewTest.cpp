#include "Presentation/Panel/ExpandedView.h"

#include "Presentation/Overlay/DigitShortcuts.h"
#include "Presentation/Overlay/InlineNameField.h"
#include "Presentation/Panel/CompletedRow.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Panel/PencilButton.h"
#include "Presentation/Panel/SessionRow.h"
#include "Presentation/Panel/UsageBars.h"
#include "Presentation/PanelFixture.h"
#include "Presentation/Style/Badge.h"
#include "Presentation/Style/TextLabel.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QPointer>
#include <QTest>
#include <QWheelEvent>

namespace morvane {
namespace {

class ExpandedViewTest : public PanelFixture {
protected:
    ExpandedViewTest() {
        motion.setReduced(true);
        view.show();
    }

    void refresh() {
        view.refresh();
        view.resize(view.sizeHint());
    }

    /// So many sessions, a second apart, each in a folder of its own.
    void work(int count) {
        for (int index = 0; index < count; ++index) {
            apply(EventBuilder(Event::promptSubmit)
                      .in(QString::number(index))
                      .with(&HookEvent::cwd, QString::number(index)));
            scheduler.advance(Seconds(1));
        }
    }

    QList<SessionRow *> rows() const { return shownIn<SessionRow>(view); }
    /// Who is shown now, from top to bottom.
    QString order() {
        refresh();
        QString result;
        for (const SessionRow *row : rows()) {
            result += row->session().id;
        }
        return result;
    }
    QStringList buttons() {
        refresh();
        return textsIn<DecideButton>(view);
    }
    QList<CompletedRow *> records() const { return shownIn<CompletedRow>(view); }
    /// Another row by so many notches of the wheel.
    void scroll(int notches) {
        QWheelEvent event({200, 100}, view.mapToGlobal(QPointF(200, 100)), {}, {0, 120 * notches},
                          {}, {}, {}, false);
        QCoreApplication::sendEvent(&view, &event);
    }
    void finish(const QString &id, const QString &folder, const std::optional<QString> &tmuxPane) {
        PaneLocator pane;
        pane.tmux = tmuxPane;
        const auto event = EventBuilder(Event::promptSubmit).in(id).with(&HookEvent::cwd, folder);
        apply(event);
        apply(event.with(&HookEvent::kind, Event::turnEnd).with(&HookEvent::pane, pane));
    }
    void finish(const QString &folder) {
        finish(folder, folder, {});
        scheduler.advance(Seconds(1));
    }

    static bool isFaded(const QWidget *row) { return row->graphicsEffect() != nullptr; }

    PanelContext withDigits() {
        PanelContext result = context;
        digitShortcuts.setWorking(true);
        result.digitShortcuts = &digitShortcuts;
        return result;
    }

    bool showsText(const QString &text) const { return textsIn<TextLabel>(view).contains(text); }

    DigitShortcuts digitShortcuts;
    const PanelContext contextWithDigits = withDigits();
    ExpandedView view{contextWithDigits, nullptr};
};

TEST_F(ExpandedViewTest, RowsStayInPlaceWhileTheirOrderAndNeighboursChange) {
    apply(Event::promptSubmit, "a");
    scheduler.advance(Seconds(1));
    apply(Event::promptSubmit, "b");
    EXPECT_EQ(order(), "ba");
    const QList<SessionRow *> before = rows();

    scheduler.advance(Seconds(1));
    apply(Event::needsInput, "a");
    apply(Event::promptSubmit, "c");
    apply(Event::sessionStart, "d");
    EXPECT_EQ(order(), "acbd");
    EXPECT_EQ(rows()[0], before[1]);
    EXPECT_EQ(rows()[2], before[0]);
    EXPECT_TRUE(showsText("OPEN — no activity yet"));

    apply(Event::turnEnd, "c");
    apply(Event::sessionEnd, "d");
    EXPECT_EQ(order(), "ab");
    // A finished session is shown once, also one without a folder.
    apply(Event::toolUse, "a");
    EXPECT_EQ(order(), "ab");
    EXPECT_EQ(records().size(), 1);
    EXPECT_FALSE(showsText("OPEN — no activity yet"));
}

TEST_F(ExpandedViewTest, ARecordReopensAndGivesWayToAQuestion) {
    finish("/a");
    finish("/b");
    store.removeSessions("/a");
    refresh();
    EXPECT_TRUE(showsText("RECENTLY COMPLETED"));
    EXPECT_TRUE(showsText("ARCHIVE"));
    ASSERT_EQ(records().size(), 2);
    QTest::mouseClick(records()[1], Qt::LeftButton, {}, QPoint(200, 10));
    EXPECT_EQ(reopened, QStringList({"/a"}));
    EXPECT_EQ(textsIn<Badge>(view), QStringList({"Ctrl+1", "Ctrl+2"}));

    apply(Event::needsInput, "asking");
    refresh();
    EXPECT_TRUE(records().isEmpty());
    EXPECT_FALSE(showsText("ARCHIVE"));
}

TEST_F(ExpandedViewTest, ARecordTakesRepliesForTheSessionThatLeftIt) {
    // Two in one folder: the record is of the one that finished last.
    finish("first", "/p", "%2");
    finish("other", "/p", {});
    EXPECT_EQ(buttons(), QStringList());
    finish("first", "/p", "%2");
    EXPECT_EQ(buttons(), QStringList{" Reply"});
    DecideButton *reply = shownIn<DecideButton>(view).first();
    QTest::mouseClick(reply->parentWidget(), Qt::LeftButton, {}, {reply->width() + 40, 12});
    EXPECT_EQ(reopened, QStringList());
    reply->click();
    auto *field = view.findChild<InlineNameField *>();
    ASSERT_TRUE(field);
    EXPECT_EQ(field->accessibleName(), "Reply to p");
    QTest::keyClicks(field, "go");
    // Another session's request neither takes the field away nor leaves other records beside it.
    finish("/q");
    apply(Event::needsInput, "asking");
    refresh();
    EXPECT_EQ(records().size(), 1);
    apply(Event::promptSubmit, "asking");
    // Neither does the end of the list, though no digit opens it there.
    for (int index = 0; index < 9; ++index) {
        finish("/" + QString::number(index));
    }
    refresh();
    const auto *held = qobject_cast<CompletedRow *>(field->parentWidget()->parentWidget());
    ASSERT_TRUE(records().contains(held));
    EXPECT_EQ(textsIn<Badge>(*held), QStringList());
    QTest::keyClicks(field, " on");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(replies, QStringList{"first: go on"});
    tellOutcome(true);
    EXPECT_EQ(buttons(), QStringList());
}

TEST_F(ExpandedViewTest, AnAgeStaysTrueWithOneTimerWhileItIsOnScreen) {
    finish("/a");
    finish("/b");
    refresh();
    const auto age = [this](int row) {
        return records()[row]->accessibleName().split(", ").last();
    };
    EXPECT_EQ(age(0), "done just now");
    scheduler.advance(Seconds(58.5));
    EXPECT_EQ(age(1), "done 1m ago");
    EXPECT_EQ(age(0), "done just now");
    scheduler.advance(Seconds(1));
    EXPECT_EQ(age(0), "done 1m ago");
    view.hide();
    const int ofTheStore = ticksWithin(Seconds(300));
    view.show();
    // And one for the time to read them in, since the first has come into the archive.
    EXPECT_EQ(ticksWithin(Seconds(300)), ofTheStore + 10 + 1);
}

TEST_F(ExpandedViewTest, RowsComeAndGoInMotionAndThenOnlyTheMascotsTick) {
    motion.setReduced(false);
    view.hide();
    apply(Event::promptSubmit, "a");
    refresh();
    view.show();
    // An opening moves as a whole.
    EXPECT_FALSE(isFaded(rows()[0]));
    EXPECT_LE(ticksWithin(Seconds(1)), 4);

    scheduler.advance(Seconds(1));
    apply(Event::promptSubmit, "b");
    EXPECT_EQ(order(), "ba");
    EXPECT_TRUE(isFaded(rows()[0]));
    EXPECT_EQ(rows()[0]->y(), -6);
    EXPECT_EQ(rows()[1]->y(), 0);
    scheduler.advance(Seconds(0.1));
    // What happens in between and moves nothing doesn't stop it.
    apply(EventBuilder(Event::toolUse).in("b").tool("Edit"));
    refresh();
    EXPECT_TRUE(isFaded(rows()[0]));
    scheduler.advance(Seconds(0.1));
    EXPECT_FALSE(isFaded(rows()[0]));
    EXPECT_EQ(rows()[0]->y(), 0);
    EXPECT_LE(ticksWithin(Seconds(1)), 4);

    const QPoint onFirst = rows()[0]->mapTo(&view, QPoint(300, 10));
    apply(Event::sessionEnd, "b");
    EXPECT_EQ(order(), "a");
    QTest::mouseClick(view.childAt(onFirst), Qt::LeftButton);
    EXPECT_TRUE(selected.isEmpty());

    motion.setReduced(true);
    scheduler.advance(Seconds(1));
    apply(Event::promptSubmit, "c");
    refresh();
    EXPECT_FALSE(isFaded(rows()[0]));
    EXPECT_EQ(rows()[0]->y(), 0);
}

TEST_F(ExpandedViewTest, ALongListMakesItsRowsAsTheyComeIntoSight) {
    for (int index = 0; index < 200; ++index) {
        apply(EventBuilder(Event::promptSubmit).in(QString::number(index)));
    }
    refresh();
    EXPECT_LT(rows().size(), 30);
    for (int step = 0; step < 400; ++step) {
        scroll(-1);
    }
    QSet<QString> seen;
    for (const SessionRow *row : rows()) {
        seen.insert(row->session().id);
    }
    EXPECT_EQ(seen.size(), 200);
    EXPECT_EQ(rows().last()->visibleRegion().boundingRect().height(), rows().last()->height());

    // A reader is told of all of them, in their order on the screen.
    scroll(400);
    QAccessible::setActive(true);
    scheduler.advance(Seconds(1));
    apply(Event::promptSubmit, "77");
    for (int index = 200; index < 240; ++index) {
        apply(EventBuilder(Event::sessionStart).in(QString::number(index)));
    }
    refresh();
    QStringList read;
    for (const QObject *child : rows().first()->parent()->children()) {
        const auto *row = qobject_cast<const SessionRow *>(child);
        read += row != nullptr && row->isVisible() ? QStringList(row->session().id) : QStringList();
    }
    EXPECT_EQ(read.join(QString()), order());
    EXPECT_EQ(read.size(), 240);
    QAccessible::setActive(false);
}

TEST_F(ExpandedViewTest, ARenameKeepsItsPlaceAndItsRow) {
    work(20);
    view.setContentHeightBudget(300);
    refresh();
    const auto edit = [this](qsizetype row) {
        rows()[row]->findChild<PencilButton *>()->click();
        return QPointer(rows()[row]->findChild<InlineNameField *>());
    };
    const auto place = [this](const QWidget *field) { return field->mapTo(&view, QPoint()); };
    auto field = edit(2);
    const QPoint before = place(field);
    QTest::keyClicks(field, "typed");
    apply(Event::promptSubmit, "0");
    apply(Event::promptSubmit, "new");
    refresh();
    EXPECT_EQ(place(field), before);
    EXPECT_EQ(field->text(), "typed");

    // What is typed on goes nowhere else, whatever becomes of the session.
    apply(EventBuilder::parked("d").in("17"));
    refresh();
    apply(Event::sessionEnd, "17");
    refresh();
    const auto outlives = [&] { return order().split("17").size() == 2; };
    EXPECT_TRUE(outlives());
    EXPECT_EQ(buttons(), QStringList());
    QTest::keyClicks(field, " on");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(renamed, QStringList("17=typed on"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(outlives());

    field = edit(0);
    scroll(-10);
    EXPECT_EQ(editing.count(), 0);
    EXPECT_EQ(renamed.size(), 1);
}

TEST_F(ExpandedViewTest, GoesToWhoeverBeginsToWaitButNotUnderAHandThatIsBusy) {
    work(30);
    view.setContentHeightBudget(400);
    const auto isCallInSight = [this] {
        refresh();
        const SessionRow *first = rows().first();
        return first->session().id == "0" && first->visibleRegion().boundingRect() == first->rect();
    };
    const auto scrollAway = [this] {
        refresh();
        scroll(-10);
    };
    const auto ask = [this] { apply(EventBuilder::parked("d").in("0")); };
    scrollAway();
    ask();
    EXPECT_TRUE(isCallInSight());
    // Where the person scrolls from there is their own affair.
    scrollAway();
    EXPECT_FALSE(isCallInSight());
    store.decide("0", AgentDecision::allow());

    scrollAway();
    SessionRow *const pressed = rows()[3];
    QTest::mousePress(pressed, Qt::LeftButton);
    ask();
    EXPECT_FALSE(isCallInSight());
    QTest::mouseRelease(pressed, Qt::LeftButton);
    EXPECT_TRUE(isCallInSight());
    store.decide("0", AgentDecision::allow());

    scrollAway();
    rows()[3]->findChild<PencilButton *>()->click();
    ask();
    EXPECT_FALSE(isCallInSight());
    QTest::keyClick(view.findChild<InlineNameField *>(), Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(isCallInSight());
}

TEST_F(ExpandedViewTest, APromptIsReadWithTheNameOfItsSession) {
    for (int index = 0; index < 30; ++index) {
        apply(Event::promptSubmit, QString::number(index));
    }
    apply(EventBuilder::parked("d"));
    view.setContentHeightBudget(400);
    refresh();
    // By a wheel that doesn't count in notches.
    const auto scrollBy = [this](int points) {
        QWheelEvent event({200, 100}, view.mapToGlobal(QPointF(200, 100)), {0, points}, {}, {}, {},
                          {}, false);
        QCoreApplication::sendEvent(&view, &event);
    };
    scrollBy(-13);
    scheduler.advance(Seconds(3));
    EXPECT_FALSE(shownIn<DecideButton>(view).first()->isEnabled());
    scrollBy(13);
    scheduler.advance(Seconds(0.85));
    EXPECT_TRUE(shownIn<DecideButton>(view).first()->isEnabled());
}

TEST_F(ExpandedViewTest, OnlyTheRowThatTheDigitsBelongToShowsThem) {
    apply(EventBuilder::parked("d1").in("a"));
    apply(EventBuilder::parked("d2").in("b"));
    refresh();
    const auto widthOfDeny = [](const SessionRow *row) {
        return shownIn<DecideButton>(*row).first()->width();
    };
    EXPECT_EQ(rows()[0]->session().id, store.sessionAwaitingDecision()->id);
    EXPECT_GT(widthOfDeny(rows()[0]), widthOfDeny(rows()[1]));
    scheduler.advance(Seconds(0.85));
    EXPECT_TRUE(view.hasBeenRead(rows()[0]->session().id));
    EXPECT_FALSE(view.hasBeenRead(rows()[1]->session().id));
}

TEST_F(ExpandedViewTest, ADigitOpensARecordOnceAllCouldBeReadAndWhileNobodyWaits) {
    finish("/over");
    refresh();
    const auto opens = [this](Seconds pause, int digit) {
        scheduler.advance(pause);
        return view.recordAt(digit).has_value();
    };
    EXPECT_TRUE(opens(Seconds(1), 0));
    EXPECT_FALSE(opens(Seconds(0), 4));
    apply(Event::needsInput, "asking");
    refresh();
    EXPECT_FALSE(opens(Seconds(1), 0));
    apply(Event::promptSubmit, "asking");
    refresh();
    EXPECT_FALSE(opens(Seconds(0.6), 0));
    EXPECT_TRUE(opens(Seconds(0.2), 0));
}

TEST_F(ExpandedViewTest, APressOutlivesAChangeOfAnotherSession) {
    apply(EventBuilder::parked("d1"));
    refresh();
    scheduler.advance(Seconds(0.85));
    DecideButton *const allow = shownIn<DecideButton>(view)[1];
    QTest::mousePress(allow, Qt::LeftButton);
    apply(Event::turnEnd, "other");
    apply(Event::promptSubmit, "another");
    refresh();
    QTest::mouseRelease(allow, Qt::LeftButton);
    EXPECT_EQ(decisions, QList<AgentDecision>({AgentDecision::allow()}));
}

TEST_F(ExpandedViewTest, TakesTheRoomThatItsContentNeeds) {
    refresh();
    EXPECT_TRUE(showsText("no active agent sessions"));
    const int narrow = view.width();
    apply(Event::promptSubmit);
    refresh();
    EXPECT_FALSE(showsText("no active agent sessions"));
    EXPECT_EQ(view.width(), narrow);
    const int footer = view.findChild<UsageBars *>()->height();
    EXPECT_GT(footer, 20);
    EXPECT_LT(view.height(), 120 + 12 + footer);
    apply(Event::needsInput);
    refresh();
    EXPECT_GT(view.width(), narrow);
    view.setContentWidthBudget(400);
    refresh();
    EXPECT_EQ(view.width(), 400);

    for (int index = 0; index < 30; ++index) {
        apply(Event::promptSubmit, QString::number(index));
    }
    view.setContentHeightBudget(480);
    refresh();
    EXPECT_EQ(view.height(), 480);
    view.setContentHeightBudget(100);
    refresh();
    EXPECT_EQ(view.height(), 120 + 28 + 12 + view.findChild<UsageBars *>()->height());
    EXPECT_EQ(ExpandedView::maxActiveListHeight(480, 60), 380);
}

TEST_F(ExpandedViewTest, NoTextIsCutOffAtItsFoot) {
    apply(EventBuilder(Event::needsInput)
              .with(&HookEvent::responseMessage, QString("word ").repeated(90)));
    apply(EventBuilder::parked("d").in("a").with(&HookEvent::toolDetail, QString(300, u'x')));
    view.setContentHeightBudget(900);
    refresh();
    for (const TextLabel *label : view.findChildren<TextLabel *>()) {
        if (label->isVisible() && label->hasHeightForWidth()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width()))
                << label->text().toStdString();
        }
    }
}

} // namespace
} // namespace morvane
