#include "Support/ServerFixture.h"

#include <nlohmann/json.hpp>

namespace morvane {
namespace {

using DecisionRelayTest = ServerFixture;
using nlohmann::json;

json decisionIn(const std::string &answer) {
    return json::parse(httpBody(answer), nullptr, false)["hookSpecificOutput"]["decision"];
}

TEST_F(DecisionRelayTest, AnswersInTheAgentsOwnForm) {
    HttpClient client = parked(permissionRequest("one"));
    EXPECT_EQ(events.back().decisionID, "one");
    server->resolve("one", AgentDecision::allow());
    const std::string answer = client.receiveAll();
    EXPECT_EQ(json::parse(httpBody(answer)),
              json::parse(R"({"hookSpecificOutput":{"decision":{"behavior":"allow"},
                              "hookEventName":"PermissionRequest"}})"));
    EXPECT_NE(answer.find("Content-Type: application/json\r\n"), std::string::npos);
    settle();
    EXPECT_TRUE(expired.empty());
}

TEST_F(DecisionRelayTest, LetsTheHookGoAfterAMinuteOfSilence) {
    HttpClient client = parked(permissionRequest("late"));
    ASSERT_TRUE(waitUntil([&] { return scheduler.timersDueIn(Seconds(60)) == 1; }));
    scheduler.advance(Seconds(59));
    EXPECT_EQ(scheduler.timersDueIn(Seconds(1)), 1u);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(client.receiveAll(), okAnswer);
    settle();
    EXPECT_EQ(expired, std::vector<std::string>{"late"});
}

TEST_F(DecisionRelayTest, TheFirstAnswerWins) {
    HttpClient client = parked(permissionRequest("race"));
    ASSERT_TRUE(waitUntil([&] { return scheduler.timersDueIn(Seconds(60)) == 1; }));
    server->resolve("race", AgentDecision::deny());
    server->resolve("race", AgentDecision::allow());
    scheduler.advance(Seconds(60));
    server->resolve("unknown", AgentDecision::allow());
    EXPECT_EQ(decisionIn(client.receiveAll()), (json{{"behavior", "deny"}}));
    settle();
    EXPECT_TRUE(expired.empty());
}

TEST_F(DecisionRelayTest, NoticesThatTheHookIsGone) {
    HttpClient client = parked(permissionRequest("killed"));
    client.hangUp();
    EXPECT_TRUE(waitUntil([&] {
        scheduler.runPosted();
        return !expired.empty();
    }));
    EXPECT_EQ(expired, std::vector<std::string>{"killed"});
    EXPECT_EQ(scheduler.timersDueIn(Seconds(60)), 0u);
}

TEST_F(DecisionRelayTest, ARetryTakesTheOlderRequestsPlace) {
    HttpClient older = parked(permissionRequest("same"));
    HttpClient newer = parked(permissionRequest("same"));
    EXPECT_EQ(older.receiveAll(), okAnswer);
    older.hangUp();
    server->resolve("same", AgentDecision::allow());
    EXPECT_EQ(decisionIn(newer.receiveAll()), (json{{"behavior", "allow"}}));
    settle();
    EXPECT_TRUE(expired.empty());
}

TEST_F(DecisionRelayTest, GivesAnEventWithoutAnIdOneOfItsOwn) {
    const std::string request =
        eventRequest({{"x-hook-event", "PermissionRequest"}, {"x-morvane-decision", "1"}},
                     R"({"session_id":"s","tool_name":"Bash"})");
    HttpClient first = parked(request);
    HttpClient second = parked(request);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_NE(events[0].decisionID, events[1].decisionID);
    server->resolve(*events[1].decisionID, AgentDecision::deny());
    EXPECT_EQ(decisionIn(second.receiveAll()), (json{{"behavior", "deny"}}));
    server->resolve(*events[0].decisionID, AgentDecision::allow());
    EXPECT_EQ(decisionIn(first.receiveAll()), (json{{"behavior", "allow"}}));
}

TEST_F(DecisionRelayTest, ReleasesAllWithoutAnAnswerOrAnExpiry) {
    HttpClient first = parked(permissionRequest("a"));
    HttpClient second = parked(permissionRequest("b", "codex"));
    settle();
    EXPECT_EQ(first.receiveAll(), okAnswer);
    EXPECT_EQ(second.receiveAll(), okAnswer);
    EXPECT_TRUE(expired.empty());
}

} // namespace
} // namespace morvane
