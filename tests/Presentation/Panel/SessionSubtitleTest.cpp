#include "Presentation/Panel/SessionSubtitle.h"

#include "Core/Sessions/Session.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

using enum SessionState;

TEST(SessionSubtitle, SaysWhatTheSessionIsDoing) {
    Session session;
    const auto says = [&session] { return SessionSubtitle::of(session).text(); };
    session.state = needsInput;
    EXPECT_EQ(says(), "needs your input");
    session.pendingApproval.emplace().toolName = "Bash";
    EXPECT_EQ(says(), "waiting to run Bash");
    session.pendingExternalResponse.emplace();
    EXPECT_EQ(says(), "waiting for your answer");
    session.pendingQuestion.emplace();
    EXPECT_EQ(says(), "asking you");

    session.state = working;
    EXPECT_EQ(says(), "working…");
    session.currentTool = "Edit";
    EXPECT_EQ(says(), "running Edit");
    session.pendingAgents = 2;
    EXPECT_EQ(says(), "waiting for 2 agents…");
}

TEST(SessionSubtitle, SaysOnWhatAsFarAsItIsKnown) {
    for (const SessionState state : {working, needsInput, idle, done, failed}) {
        const bool isFinished = state == done || state == failed;
        Session session;
        session.state = state;
        EXPECT_EQ(SessionSubtitle::of(session).detail, QString());
        session.lastPrompt = "prompt";
        EXPECT_EQ(SessionSubtitle::of(session).detail, "prompt");
        session.aiTitle = "title";
        EXPECT_EQ(SessionSubtitle::of(session).detail, "title");
        session.summary = "summary";
        EXPECT_EQ(SessionSubtitle::of(session).detail, isFinished ? "summary" : "title");
    }
}

} // namespace
} // namespace morvane
