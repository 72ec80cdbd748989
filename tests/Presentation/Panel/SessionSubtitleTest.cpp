#include "Presentation/Panel/SessionSubtitle.h"

#include "Core/Sessions/Session.h"
#include "Support/Printing.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

using enum SessionState;

Session inState(SessionState state) {
    Session session;
    session.state = state;
    return session;
}

TEST(SessionSubtitle, SaysWhatTheSessionIsDoing) {
    Session asking = inState(needsInput);
    asking.pendingQuestion = PendingQuestion();
    Session external = inState(needsInput);
    external.pendingExternalResponse = PendingExternalResponse();
    Session approval = inState(needsInput);
    approval.pendingApproval = PendingApproval();
    approval.pendingApproval->toolName = "Bash";
    Session tool = inState(working);
    tool.currentTool = "Edit";
    Session oneAgent = tool;
    oneAgent.pendingAgents = 1;
    Session twoAgents = tool;
    twoAgents.pendingAgents = 2;
    const std::pair<Session, const char *> cases[] = {
        {asking, "asking you"},
        {external, "waiting for your answer"},
        {approval, "waiting to run Bash"},
        {inState(needsInput), "needs your input"},
        {twoAgents, "waiting for 2 agents…"},
        {oneAgent, "waiting for 1 agent…"},
        {tool, "running Edit"},
        {inState(working), "working…"},
    };
    for (const auto &[session, text] : cases) {
        EXPECT_EQ(SessionSubtitle::of(session).text(), QString::fromUtf8(text));
    }
}

TEST(SessionSubtitle, SaysOnWhatAsFarAsItIsKnown) {
    for (const SessionState state : {working, needsInput, idle, done, failed}) {
        const bool isFinished = state == done || state == failed;
        Session session = inState(state);
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
