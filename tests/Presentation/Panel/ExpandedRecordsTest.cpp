#include "Presentation/Panel/ExpandedViewFixture.h"
#include "Presentation/Style/Badge.h"

namespace morvane {
namespace {

using ExpandedRecordsTest = ExpandedViewFixture;

TEST_F(ExpandedRecordsTest, ARecordReopensAndGivesWayToAQuestion) {
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

TEST_F(ExpandedRecordsTest, ARecordTakesRepliesForTheSessionThatLeftIt) {
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

TEST_F(ExpandedRecordsTest, AnAgeStaysTrueWithOneTimerWhileItIsOnScreen) {
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

} // namespace
} // namespace morvane
