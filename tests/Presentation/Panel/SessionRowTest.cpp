#include "Presentation/Panel/PencilButton.h"
#include "Presentation/Panel/SessionRowFixture.h"
#include "Presentation/Panel/SessionSubtitle.h"

namespace morvane {
namespace {

using SessionRowTest = SessionRowFixture;

TEST_F(SessionRowTest, KeepsNothingOfWhatItNoLongerIsToShow) {
    const EventBuilder requests[] = {EventBuilder::parked("d"),
                                     EventBuilder::parked("d").asking({"Sure?"})};
    for (const EventBuilder &request : requests) {
        apply(request);
        const Session plain = store.sessions().value("s");
        Session rich = plain;
        rich.hostAppName = "kitty";
        rich.gitBranch = QStringLiteral("\u202Eniam");
        rich.permissionMode = "plan";
        rich.contextTokens = 185'000;
        rich.subagents = {{{}, "look", false}};
        SessionRow fresh(context, nullptr);
        fresh.setSession(plain, {});
        fresh.show();
        row.show();
        row.setSession(rich, {});
        for (const char *told :
             {"in kitty", "branch ⟨U+202E⟩niam", "permission mode plan", "context 185k"}) {
            EXPECT_TRUE(isReadOut(row, told)) << told;
        }
        const std::pair<Session, SessionRow::Details> befores[] = {
            {rich, {}},
            {plain, SessionRow::Detail::showsAgent},
            {plain, SessionRow::Detail::showsShortcuts}};
        for (const auto &[session, details] : befores) {
            row.setSession(session, details);
            EXPECT_NE(contents(row), contents(fresh));
            row.setSession(plain, {});
            EXPECT_EQ(contents(row), contents(fresh));
        }
        store.decide("s", AgentDecision::deny());
    }
}

TEST_F(SessionRowTest, LeadsToTheSessionButNotFromBesideAButton) {
    show(EventBuilder::parked("d"));
    QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(300, 12));
    EXPECT_EQ(selected, QStringList({"s"}));
    const DecideButton *const deny = shownIn<DecideButton>(row).first();
    QTest::mouseClick(&row, Qt::LeftButton, {}, deny->mapTo(&row, QPoint(-3, -3)));
    EXPECT_EQ(selected.size(), 1);
    EXPECT_TRUE(decisions.isEmpty());

    apply(Event::toolUse);
    apply(EventBuilder(Event::turnEnd));
    apply(Event::needsInput);
    show();
    ASSERT_EQ(textsIn<DecideButton>(row), QStringList({"Answer in the terminal"}));
    shownIn<DecideButton>(row).first()->click();
    EXPECT_EQ(selected, QStringList({"s", "s"}));
}

TEST_F(SessionRowTest, ThePencilTurnsTheNameIntoAFieldThatOutlivesAnUpdate) {
    // What has no folder has no name to change.
    auto &pencil = *row.findChild<PencilButton *>();
    apply(Event::promptSubmit);
    show();
    EXPECT_FALSE(pencil.isVisible());
    show(EventBuilder(Event::promptSubmit).at("/srv/folder"));
    EXPECT_TRUE(pencil.isVisible());
    const int height = row.sizeHint().height();
    pencil.click();
    ASSERT_TRUE(fieldIn(row));
    EXPECT_EQ(fieldIn(row)->text(), "folder");
    EXPECT_EQ(row.sizeHint().height(), height);
    QTest::keyClicks(fieldIn(row), "mine");
    apply(EventBuilder(Event::toolUse).tool("Edit"));
    store.renameCwd("/srv/folder", QString("elsewhere"));
    show();
    // The name goes to the folder for which the field was opened.
    show(EventBuilder(Event::toolUse).at("/srv/folder/deeper"));
    EXPECT_EQ(fieldIn(row)->text(), "mine");
    QTest::keyClick(fieldIn(row), Qt::Key_Return);
    EXPECT_EQ(renamed, QStringList({"/srv/folder=mine"}));
    EXPECT_FALSE(fieldIn(row));
    EXPECT_FALSE(editing.isActive(scheduler.now()));

    // A click that takes the focus away closes the field and does no more.
    pencil.click();
    QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(300, 35));
    EXPECT_EQ(renamed.size(), 2);
    EXPECT_TRUE(selected.isEmpty());
    EXPECT_FALSE(fieldIn(row));
    QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(300, 35));
    EXPECT_EQ(selected.size(), 1);

    // Such a click commits a long name unchanged.
    const QString name(500, 'n');
    store.renameCwd("/srv/folder/deeper", name);
    show();
    pencil.click();
    QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(300, 35));
    EXPECT_EQ(renamed.last(), "/srv/folder/deeper=" + name);
}

TEST(SessionSubtitle, SaysWhatTheSessionIsDoingAndOnWhatAsFarAsItIsKnown) {
    Session session;
    const auto says = [&session] { return SessionSubtitle::of(session).text(); };
    session.state = SessionState::needsInput;
    EXPECT_EQ(says(), "needs your input");
    session.pendingApproval.emplace().toolName = "Bash";
    EXPECT_EQ(says(), "waiting to run Bash");
    session.pendingExternalResponse.emplace();
    EXPECT_EQ(says(), "waiting for your answer");
    session.pendingQuestion.emplace();
    EXPECT_EQ(says(), "asking you");
    session.lastPrompt = "prompt";
    EXPECT_EQ(says(), "asking you · prompt");

    session.state = SessionState::working;
    session.currentTool = "Edit";
    EXPECT_EQ(says(), "running Edit · prompt");
    session.pendingAgents = 2;
    session.aiTitle = "title";
    session.summary = "summary";
    EXPECT_EQ(says(), "waiting for 2 agents… · title");
    session.state = SessionState::failed;
    EXPECT_EQ(says(), "failed · summary");
    session.state = SessionState::done;
    EXPECT_EQ(says(), "done · summary");
}

} // namespace
} // namespace morvane
