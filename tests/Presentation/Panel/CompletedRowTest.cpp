#include "Presentation/Panel/CompletedRow.h"

#include "Presentation/Panel/DecideButton.h"
#include "Presentation/PanelFixture.h"

#include <QLabel>
#include <QTest>

namespace morvane {
namespace {

class CompletedRowTest : public PanelFixture {
protected:
    /// Lets a session finish where it can be typed into.
    void finish(const QString &sessionID = "s") {
        PaneLocator pane;
        pane.tmux = "%1";
        apply(EventBuilder(Event::turnEnd).in(sessionID).at("/p").with(&HookEvent::pane, pane));
    }

    void show() {
        CompletedRow::Details details;
        details.session = store.finishedSession(store.completedHistory().first());
        row.setRecord(store.completedHistory().first(), details);
        showLaidOut(row);
    }

    bool offersReply() {
        show();
        return textsIn<DecideButton>(row) == QStringList({" Reply"});
    }
    bool says(const QString &text) {
        show();
        return textsIn<QLabel>(row).contains(text);
    }

    InlineNameField *field() const { return fieldIn(row); }
    InlineNameField &open() {
        show();
        shownIn<DecideButton>(row).first()->click();
        return *field();
    }
    void type(const QString &text, Qt::Key key) {
        QTest::keyClicks(&open(), text);
        send(*field(), QFocusEvent(QEvent::FocusOut, Qt::OtherFocusReason));
        QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(300, 12));
        QTest::keyClick(field(), key);
        EXPECT_FALSE(field());
    }

    CompletedRow row{context, nullptr};
};

TEST_F(CompletedRowTest, SendsWhatIsTypedAndNothingElse) {
    finish();
    type("dropped", Qt::Key_Escape);
    type("  ", Qt::Key_Return);
    EXPECT_TRUE(replies.isEmpty());
    type("go on", Qt::Key_Return);
    EXPECT_EQ(replies, QStringList({"s: go on"}));
    EXPECT_TRUE(reopened.isEmpty());
    EXPECT_FALSE(says("sent"));
    tellOutcome(true);
    EXPECT_TRUE(says("sent"));
    // Which is told of this end, and not of the next.
    scheduler.advance(Seconds(1));
    apply(Event::promptSubmit);
    finish();
    EXPECT_FALSE(says("sent"));

    // What could not be sent needn't be typed again.
    type("and on", Qt::Key_Return);
    EXPECT_FALSE(says("sent"));
    tellOutcome(false);
    EXPECT_TRUE(says("could not be sent"));
    EXPECT_EQ(open().text(), "and on");
    row.hide();
    EXPECT_TRUE(says("not sent"));
    EXPECT_EQ(open().text(), "and on");
    send(*field(), QInputMethodEvent("つ", {}));
    row.hide();
    EXPECT_EQ(open().text(), "つ");
    QTest::keyClick(field(), Qt::Key_Escape);
    EXPECT_EQ(open().text(), "");
    row.hide();
    EXPECT_FALSE(says("not sent"));
    EXPECT_EQ(editing.count(), 0);
}

TEST_F(CompletedRowTest, ATextStaysWithTheSessionThatItWasTypedFor) {
    // Whoever refuses says so at once.
    context.actions.onReply = [this](const Session &session, const QString &text,
                                     const auto &told) {
        replies += session.id + ": " + text;
        told(false);
    };
    const std::function<void()> changes[] = {
        [this] { apply(Event::promptSubmit); },
        [this] { store.removeSessions("/p"); },
        [this] { finish("other"); },
    };
    for (const auto &change : changes) {
        finish();
        QTest::keyClicks(&open(), "go");
        change();
        show();
        ASSERT_TRUE(field());
        QTest::keyClicks(field(), " on");
        QTest::keyClick(field(), Qt::Key_Return);
        EXPECT_EQ(std::exchange(replies, {}), QStringList({"s: go on"}));
        EXPECT_TRUE(says("could not be sent"));
        EXPECT_EQ(open().text(), "go on");
        QTest::keyClick(field(), Qt::Key_Escape);
        EXPECT_EQ(offersReply(), store.sessions().contains("other"));
        store.removeSessions("/p");
    }
}

} // namespace
} // namespace morvane
