#include "Presentation/Panel/ExpandedViewFixture.h"
#include "Presentation/Style/Badge.h"

namespace morvane {
namespace {

class ExpandedRecordsTest : public ExpandedViewFixture {
protected:
    /// Lets a session finish where it can be typed into.
    void finishInPane(const QString &id = "s") { finish(id, "/p", "%1"); }

    bool says(const QString &text) {
        refresh();
        return showsText(text);
    }
    InlineNameField *field() const { return fieldIn(view); }
    InlineNameField &open() {
        refresh();
        shownIn<DecideButton>(view).first()->click();
        return *field();
    }
    void type(const QString &text, Qt::Key key) {
        QTest::keyClicks(&open(), text);
        send(*field(), QFocusEvent(QEvent::FocusOut, Qt::OtherFocusReason));
        QTest::mouseClick(records().first(), Qt::LeftButton, {}, QPoint(300, 12));
        QTest::keyClick(field(), key);
        EXPECT_FALSE(field());
    }
    void closeAndOpenPanel() {
        view.hide();
        view.show();
    }
};

TEST_F(ExpandedRecordsTest, ARecordReopensAndGivesWayToAQuestion) {
    finish("/a");
    finish("/b");
    store.removeSessions("/a");
    refresh();
    EXPECT_TRUE(showsText("RECENTLY COMPLETED"));
    EXPECT_TRUE(showsText("ARCHIVE"));
    ASSERT_EQ(records().size(), 2);
    scheduler.advance(Seconds(0.8));
    QTest::mouseClick(records()[1], Qt::LeftButton, {}, QPoint(200, 10));
    EXPECT_EQ(reopened, QStringList({"/a"}));
    EXPECT_EQ(textsIn<Badge>(view), QStringList({"Ctrl+1", "Ctrl+2"}));

    apply(Event::needsInput, "asking");
    refresh();
    EXPECT_TRUE(records().isEmpty());
    EXPECT_FALSE(showsText("ARCHIVE"));
}

TEST_F(ExpandedRecordsTest, WhatTakesThePlaceOfAPromptIsNotPressedForIt) {
    const auto click = [](QWidget *row) {
        QTest::mouseClick(row, Qt::LeftButton, {}, QPoint(200, 10));
    };
    finish("/a");
    apply(EventBuilder::parked("d"));
    refresh();
    store.decide("s", AgentDecision::deny());
    refresh();
    scheduler.advance(Seconds(0.65));
    click(records().first());
    click(rows().first());
    scheduler.advance(Seconds(0.1));
    // A double click may have begun on the prompt.
    for (const auto type : {QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
        send(*records().first(),
             QMouseEvent(type, {200, 10}, {200, 10}, Qt::LeftButton, Qt::LeftButton, {}));
    }
    EXPECT_EQ(reopened + selected, QStringList());
    click(records().first());
    click(rows().first());
    EXPECT_EQ(reopened + selected, (QStringList{"/a", "s"}));

    // The rows of agents at work change places all the time.
    work(2);
    refresh();
    scheduler.advance(Seconds(1));
    apply(Event::toolUse, "0");
    EXPECT_TRUE(order().startsWith("01"));
    click(rows().first());
    EXPECT_EQ(selected.last(), "0");
}

TEST_F(ExpandedRecordsTest, ARecordTakesRepliesForTheSessionThatLeftIt) {
    // Two in one folder: the record is of the one that finished last.
    finish("first", "/p", "%2");
    finish("other", "/p", {});
    EXPECT_EQ(buttons(), QStringList());
    finish("first", "/p", "%2");
    EXPECT_EQ(buttons(), QStringList{" Reply"});
    auto *field = &open();
    EXPECT_EQ(field->accessibleName(), "Reply to p");
    QTest::keyClicks(field, "go");
    // Another session's request neither takes the field away nor leaves other records beside it.
    finish("/q");
    apply(Event::needsInput, "asking");
    refresh();
    EXPECT_EQ(records().size(), 1);
    QTest::keyClicks(field, " on");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(replies, QStringList{"first: go on"});
}

TEST_F(ExpandedRecordsTest, AReplyIsWhatIsTypedAndNothingElse) {
    finishInPane();
    type("dropped", Qt::Key_Escape);
    type("  ", Qt::Key_Return);
    EXPECT_TRUE(replies.isEmpty());
    type("go on", Qt::Key_Return);
    EXPECT_EQ(replies, QStringList({"s: go on"}));
    EXPECT_TRUE(reopened.isEmpty());
    EXPECT_FALSE(says("sent"));
    tellOutcome(true);
    EXPECT_TRUE(says("sent"));
    // The outcome is shown for this end of a turn, and not for the next.
    scheduler.advance(Seconds(1));
    finishInPane();
    EXPECT_FALSE(says("sent"));

    // A text that could not be sent is kept, on every display.
    ExpandedView other(contextWithDigits, nullptr);
    other.refresh();
    other.resize(other.sizeHint());
    other.show();
    type("and on", Qt::Key_Return);
    tellOutcome(false);
    EXPECT_TRUE(textsIn<TextLabel>(other).contains("not sent"));
    EXPECT_TRUE(says("could not be sent"));
    EXPECT_EQ(open().text(), "and on");
    closeAndOpenPanel();
    EXPECT_TRUE(says("not sent"));
    send(open(), QInputMethodEvent("つ", {}));
    closeAndOpenPanel();
    EXPECT_EQ(open().text(), "つ");
    QTest::keyClick(field(), Qt::Key_Escape);
    EXPECT_EQ(open().text(), "");
    closeAndOpenPanel();
    EXPECT_FALSE(says("not sent"));
    EXPECT_FALSE(editing.isActive(scheduler.now()));
}

TEST_F(ExpandedRecordsTest, ATextStaysWithTheSessionThatItWasTypedFor) {
    refusesReplies = true;
    const std::function<void()> changes[] = {
        [this] { apply(Event::promptSubmit); },
        [this] { store.removeSessions("/p"); },
        [this] { finishInPane("other"); },
    };
    for (const auto &change : changes) {
        finishInPane();
        QTest::keyClicks(&open(), "go");
        change();
        refresh();
        ASSERT_TRUE(field());
        QTest::keyClicks(field(), " on");
        QTest::keyClick(field(), Qt::Key_Return);
        EXPECT_EQ(std::exchange(replies, {}), QStringList({"s: go on"}));
        const bool isThere = store.sessions().contains("s");
        EXPECT_EQ(says("could not be sent"), isThere);
        if (isThere) {
            EXPECT_EQ(open().text(), "go on");
            QTest::keyClick(field(), Qt::Key_Escape);
        }
        EXPECT_EQ(buttons().isEmpty(), !store.sessions().contains("other"));
        store.removeSessions("/p");
    }
}

TEST_F(ExpandedRecordsTest, AnAgeStaysTrueWithOneTimerWhileItIsOnScreen) {
    finish("/a");
    finish("/b");
    refresh();
    const auto age = [this](int row) {
        return records()[row]->accessibleName().split(", ").last();
    };
    scheduler.advance(Seconds(58.5));
    EXPECT_EQ(age(1), "done 1m ago");
    EXPECT_EQ(age(0), "done just now");
    scheduler.advance(Seconds(1));
    EXPECT_EQ(age(0), "done 1m ago");
    view.hide();
    const int ofTheStore = ticksWithin(Seconds(300));
    view.show();
    // The 2 are the delays before digits and clicks, since the first has moved to the archive.
    EXPECT_EQ(ticksWithin(Seconds(300)), ofTheStore + 10 + 2);
}

} // namespace
} // namespace morvane
