#include "Core/Adapters/AgentRegistry.h"
#include "Support/ServerFixture.h"

namespace morvane {
namespace {

using DecisionRelayTest = ServerFixture;

/// What the agent is told.
std::string decision(const std::string &behavior) {
    return R"({"hookSpecificOutput":{"decision":{"behavior":")" + behavior +
           R"("},"hookEventName":"PermissionRequest"}})";
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
    EXPECT_EQ(httpBody(client.receiveAll()), decision("deny"));
    settle();
    EXPECT_TRUE(expired.empty());
}

TEST_F(DecisionRelayTest, NoticesThatTheHookIsGone) {
    HttpClient client = parked(permissionRequest("killed"));
    client.send("more");
    settle();
    EXPECT_TRUE(expired.empty()) << "it has only said more";
    client.hangUp();
    EXPECT_TRUE(comesAbout([&] { return !expired.empty(); }));
    EXPECT_EQ(expired, std::vector<std::string>{"killed"});
    EXPECT_EQ(scheduler.timersDueIn(Seconds(60)), 0u);
}

TEST_F(DecisionRelayTest, AnswersTheSessionThatItWasGivenFor) {
    // Two sessions with the same call id, and two calls without an id.
    const std::pair<const char *, const char *> calls[] = {
        {R"({"session_id":"one","tool_use_id":"call_1"})",
         R"({"session_id":"two","tool_use_id":"call_1"})"},
        {R"({"session_id":"s","tool_name":"Bash"})", R"({"session_id":"s","tool_name":"Bash"})"}};
    const HttpHeaders headers{{"x-hook-event", "PermissionRequest"}, {"x-morvane-decision", "1"}};
    for (const auto &[harmless, other] : calls) {
        events.clear();
        HttpClient first = parked(eventRequest(headers, harmless));
        HttpClient second = parked(eventRequest(headers, other));
        ASSERT_EQ(events.size(), 2u);
        EXPECT_NE(events[0].decisionID, events[1].decisionID);
        // Not in the order in which they came.
        server->resolve(*events[1].decisionID, AgentDecision::deny());
        EXPECT_EQ(httpBody(second.receiveAll()), decision("deny"));
        server->resolve(*events[0].decisionID, AgentDecision::allow());
        EXPECT_EQ(httpBody(first.receiveAll()), decision("allow"));
    }
    settle();
    EXPECT_TRUE(expired.empty());
}

TEST_F(DecisionRelayTest, ARetryTakesTheOlderOnesPlaceAndIsAnsweredOnlyOnceItCanHaveBeenSeen) {
    HttpClient older = parked(permissionRequest("same"));
    HttpClient newer(port());
    newer.send(permissionRequest("same"));
    EXPECT_EQ(older.receiveAll(), okAnswer);
    older.hangUp();
    server->resolve("same", AgentDecision::allow());
    ASSERT_TRUE(comesAbout([&] { return events.size() == 2; }));
    server->resolve("same", AgentDecision::deny());
    EXPECT_EQ(httpBody(newer.receiveAll()), decision("deny"));
    settle();
    EXPECT_TRUE(expired.empty());
}

TEST_F(DecisionRelayTest, ReleasesWhoeverWaits) {
    HttpClient client = parked(permissionRequest("released"));
    server->releaseAllDecisions();
    EXPECT_EQ(client.receiveAll(), okAnswer);
    settle();
    EXPECT_TRUE(expired.empty());
    EXPECT_EQ(scheduler.timersDueIn(Seconds(60)), 0u);
}

TEST(DecisionRelay, TellsAtOnceOfAHookThatCannotBeWatched) {
    IoThread thread; // never started; its work runs only in poll()
    ManualScheduler scheduler;
    const EventConnection::Queue queue(thread.context().get_executor());
    Turns turns(queue);
    const EventConnection::Surroundings surroundings{thread.context(), queue, turns, {}};
    std::vector<std::string> told;
    const auto relay = std::make_shared<DecisionRelay>(
        queue, scheduler, scheduler,
        DecisionRelay::Handlers{
            [&](const HookEvent &event) { told.push_back(event.decisionID->toStdString()); },
            [&](const QString &id) { told.push_back("expired " + id.toStdString()); }});
    HookEvent event;
    event.toolUseID = "call_1";
    // A descriptor that isn't open can't be watched.
    relay->park(event, AgentRegistry::adapter(event.agent),
                std::make_shared<EventConnection>(surroundings, -1, 0), {});
    thread.context().poll();
    scheduler.runPosted();
    EXPECT_EQ(told, (std::vector<std::string>{"call_1", "expired call_1"}));
    EXPECT_EQ(scheduler.timersDueIn(Seconds(60)), 0u);
}

} // namespace
} // namespace morvane
