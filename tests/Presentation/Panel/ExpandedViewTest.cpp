#include "Presentation/Panel/ExpandedViewFixture.h"
#include "Presentation/Panel/PencilButton.h"

namespace morvane {
namespace {

using ExpandedViewTest = ExpandedViewFixture;

bool isFaded(const QWidget *row) {
    return row->graphicsEffect() != nullptr;
}

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

TEST_F(ExpandedViewTest, RowsComeAndGoInMotionAndThenOnlyTheMascotsTick) {
    motion.setReduced(false);
    view.hide();
    apply(Event::promptSubmit, "a");
    refresh();
    view.show();
    // A panel that opens moves as a whole; its rows don't fade in.
    EXPECT_FALSE(isFaded(rows()[0]));
    EXPECT_LE(ticksWithin(Seconds(1)), 4);

    scheduler.advance(Seconds(1));
    apply(Event::promptSubmit, "b");
    EXPECT_EQ(order(), "ba");
    EXPECT_TRUE(isFaded(rows()[0]));
    EXPECT_EQ(rows()[0]->y(), -6);
    EXPECT_EQ(rows()[1]->y(), 0);
    scheduler.advance(Seconds(0.1));
    // An update that moves no row doesn't stop the motion.
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
    work(200);
    refresh();
    EXPECT_LT(rows().size(), 30);
    for (int step = 0; step < 400; ++step) {
        scroll(0, -1);
    }
    EXPECT_EQ(rows().size(), 200);
    EXPECT_EQ(rows().last()->visibleRegion().boundingRect().height(), rows().last()->height());

    // A screen reader gets all rows, in their order on the screen.
    scroll(0, 400);
    QAccessible::setActive(true);
    scheduler.advance(Seconds(1));
    apply(Event::promptSubmit, "77");
    apply(Event::sessionStart, "open");
    refresh();
    QStringList read;
    for (const QObject *child : rows().first()->parent()->children()) {
        const auto *row = qobject_cast<const SessionRow *>(child);
        read += row != nullptr && row->isVisible() ? QStringList(row->session().id) : QStringList();
    }
    EXPECT_EQ(read.join(QString()), order());
    EXPECT_EQ(read.size(), 201);
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

    // What is typed next stays in this field, whatever becomes of the session.
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
    scroll(0, -10);
    EXPECT_FALSE(editing.isActive(scheduler.now()));
    EXPECT_EQ(renamed.size(), 1);
}

TEST_F(ExpandedViewTest, TheSmallStepsOfAWheelAddUp) {
    work(30);
    view.setContentHeightBudget(400);
    refresh();
    const int before = rows()[3]->mapTo(&view, QPoint()).y();
    for (int step = 0; step < 60; ++step) {
        scroll(0, -1.0 / 120);
    }
    scroll(0, -0.5);
    EXPECT_EQ(rows()[3]->mapTo(&view, QPoint()).y(), before - 48);
}

TEST_F(ExpandedViewTest, GoesToWhoeverBeginsToWaitButNotUnderAHandThatIsBusy) {
    work(30);
    view.setContentHeightBudget(400);
    const auto isCallInSight = [this] {
        const SessionRow *first = rows().first();
        return first->session().id == "0" && first->visibleRegion().boundingRect() == first->rect();
    };
    const auto scrollAway = [this] {
        refresh();
        scheduler.advance(Seconds(0.8));
        scroll(0, -10);
    };
    const auto ask = [this] {
        apply(EventBuilder::parked("d").in("0"));
        refresh();
    };
    scrollAway();
    ask();
    EXPECT_TRUE(isCallInSight());
    // From there the person may scroll away.
    scrollAway();
    EXPECT_FALSE(isCallInSight());
    store.decide("0", AgentDecision::allow());

    scrollAway();
    SessionRow *const pressed = rows()[3];
    QTest::mousePress(pressed, Qt::LeftButton);
    ask();
    EXPECT_FALSE(isCallInSight());
    QTest::mouseRelease(pressed, Qt::LeftButton, {}, QPoint(-9, 0));
    scheduler.advance(Seconds(0.3));
    EXPECT_TRUE(isCallInSight());
    store.decide("0", AgentDecision::allow());

    scrollAway();
    rows()[3]->findChild<PencilButton *>()->click();
    ask();
    EXPECT_FALSE(isCallInSight());
    QTest::keyClick(view.findChild<InlineNameField *>(), Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    scheduler.advance(Seconds(0.3));
    EXPECT_TRUE(isCallInSight());
}

TEST_F(ExpandedViewTest, APromptIsReadWithTheNameOfItsSession) {
    work(30);
    apply(EventBuilder::parked("d"));
    view.setContentHeightBudget(400);
    refresh();
    // The wheel tells pixels, and no notches.
    scroll(-13, 0);
    scheduler.advance(Seconds(3));
    EXPECT_FALSE(shownIn<DecideButton>(view).first()->isEnabled());
    scroll(13, 0);
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

TEST_F(ExpandedViewTest, TakesTheRoomThatItsContentNeeds) {
    refresh();
    EXPECT_TRUE(showsText("no active agent sessions"));
    const int narrow = view.width();
    apply(Event::promptSubmit);
    refresh();
    EXPECT_FALSE(showsText("no active agent sessions"));
    EXPECT_EQ(view.width(), narrow);
    EXPECT_LT(view.height(), 120 + 12 + view.findChild<UsageBars *>()->height());
    apply(Event::needsInput);
    refresh();
    EXPECT_GT(view.width(), narrow);
    view.setContentWidthBudget(400);
    refresh();
    EXPECT_EQ(view.width(), 400);

    work(30);
    view.setContentHeightBudget(480);
    refresh();
    EXPECT_EQ(view.height(), 480);
    view.setContentHeightBudget(100);
    refresh();
    EXPECT_EQ(view.height(), 120 + 28 + 12 + view.findChild<UsageBars *>()->height());
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
