#include "Presentation/Panel/SessionSubtitle.h"

#include "Core/Sessions/Session.h"
#include "Support/Printing.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

using enum SessionState;

TEST(SessionSubtitle, SaysWhatTheSessionIsDoing) {
    Session session;
    const auto says = [&session] { return SessionSubtitle::of(session).text(); };
    session.state = needsInput;
    EXPECT_EQ(says(), "needs your input");
    session.pendingApproval = PendingApproval();
    session.pendingApproval->toolName = "Bash";
    EXPECT_EQ(says(), "waiting to run Bash");
    session.pendingApproval->toolName = "B\u202eash";
    EXPECT_EQ(says(), "waiting to run B⟨U+202E⟩ash");
    session.pendingExternalResponse = PendingExternalResponse();
    EXPECT_EQ(says(), "waiting for your answer");
    session.pendingQuestion = PendingQuestion();
    EXPECT_EQ(says(), "asking you");

    session.state = working;
    EXPECT_EQ(says(), "working…");
    session.currentTool = "Edit";
    EXPECT_EQ(says(), "running Edit");
    // An agent may call its tools whatever it likes.
    session.currentTool = "E\u202edit\n" + QString(9'000, 'x');
    EXPECT_TRUE(says().startsWith("running E⟨U+202E⟩dit⟨U+000A⟩x"));
    EXPECT_LT(says().size(), 200);
    session.pendingAgents = 1;
    EXPECT_EQ(says(), "waiting for 1 agent…");
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
