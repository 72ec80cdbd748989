#include "Core/Adapters/AgentRegistry.h"
#include "Support/ServerFixture.h"

#include <array>
#include <sys/socket.h>

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
    const std::string answer = client.receiveAll();
    EXPECT_EQ(httpBody(answer), decision("deny"));
    EXPECT_NE(answer.find("Content-Type: application/json\r\n"), std::string::npos);
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

TEST_F(DecisionRelayTest, ARetryTakesTheOlderRequestsPlace) {
    HttpClient older = parked(permissionRequest("same"));
    HttpClient newer = parked(permissionRequest("same"));
    EXPECT_EQ(older.receiveAll(), okAnswer);
    older.hangUp();
    server->resolve("same", AgentDecision::allow());
    EXPECT_EQ(httpBody(newer.receiveAll()), decision("allow"));
    settle();
    EXPECT_TRUE(expired.empty());
}

TEST_F(DecisionRelayTest, AnswersTheSessionThatItWasGivenFor) {
    // Calls of one name in two sessions, and such as have none.
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

TEST_F(DecisionRelayTest, AnswersOnlyWhatThePersonCanHaveSeen) {
    HttpClient seen = parked(permissionRequest("call_1"));
    HttpClient unseen(port());
    unseen.send(permissionRequest("call_1"));
    EXPECT_EQ(seen.receiveAll(), okAnswer); // the newer one has taken its place
    server->resolve("call_1", AgentDecision::allow());
    ASSERT_TRUE(comesAbout([&] { return events.size() == 2; }));
    server->resolve("call_1", AgentDecision::deny());
    EXPECT_EQ(httpBody(unseen.receiveAll()), decision("deny"));
}

/// A relay whose thread stands still until a test lets it do what it has to.
class StillRelayTest : public testing::Test {
protected:
    void park(int descriptor) {
        HookEvent event;
        event.toolUseID = "call_1";
        relay->park(event, AgentRegistry::adapter(event.agent),
                    std::make_shared<EventConnection>(surroundings, descriptor, 0), {});
        goOn();
    }

    void goOn() {
        thread.context().poll();
        scheduler.runPosted();
    }

    std::size_t waiting() const { return scheduler.timersDueIn(Seconds(60)); }

    IoThread thread;
    ManualScheduler scheduler;
    const EventConnection::Queue queue{thread.context().get_executor()};
    Turns turns{queue};
    const EventConnection::Surroundings surroundings{thread.context(), queue, turns, {}};
    std::vector<std::string> told;
    const std::shared_ptr<DecisionRelay> relay = std::make_shared<DecisionRelay>(
        queue, scheduler, scheduler,
        DecisionRelay::Handlers{
            [&](const HookEvent &event) { told.push_back(event.decisionID->toStdString()); },
            [&](const QString &id) { told.push_back("expired " + id.toStdString()); }});
};

TEST_F(StillRelayTest, TellsAtOnceOfAHookThatCannotBeWatched) {
    park(-1); // the system waits for no descriptor that isn't open
    EXPECT_EQ(told, (std::vector<std::string>{"call_1", "expired call_1"}));
    EXPECT_EQ(waiting(), 0u);
}

TEST_F(StillRelayTest, ReleasesWhoeverWaitsWithoutWaitingItself) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends.data()), 0);
    const Descriptor hook(ends[0]);
    park(ends[1]);
    relay->releaseAll();
    EXPECT_EQ(waiting(), 1u);
    goOn();
    std::array<char, 256> answer{};
    EXPECT_GT(::recv(hook.number(), answer.data(), answer.size() - 1, 0), 0);
    EXPECT_EQ(std::string(answer.data()), okAnswer);
    EXPECT_EQ(told, std::vector<std::string>{"call_1"});
    EXPECT_EQ(waiting(), 0u);
}

} // namespace
} // namespace morvane
