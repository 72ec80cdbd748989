#include "App/AppFixture.h"
#include "Support/EventBuilder.h"
#include "Support/HttpClient.h"
#include "Support/WaitUntil.h"

namespace morvane {
namespace {

class ApprovalsTest : public ControllerFixture {
protected:
    ApprovalsTest() { addFakeScreen(platform); }

    std::string permissionRequest() const {
        return httpPost("/event",
                        {{"x-morvane-token", settings.eventToken().toStdString()},
                         {"x-hook-event", "PermissionRequest"},
                         {"x-morvane-decision", "1"}},
                        R"({"session_id":"s","tool_name":"Bash"})");
    }

    /// A hook that waits for a decision.
    HttpClient ask() {
        HttpClient hook(settings.port());
        hook.send(permissionRequest());
        EXPECT_TRUE(becomesAwaited(true));
        return hook;
    }

    bool becomesAwaited(bool isAwaited) {
        return waitUntil([&] {
            scheduler.runPosted();
            return store.sessionAwaitingDecision().has_value() == isAwaited;
        });
    }
};

TEST_F(ApprovalsTest, CarriesADecisionBackToTheHook) {
    controller.start();
    HttpClient hook = ask();
    store.decide("s", AgentDecision::deny());
    EXPECT_NE(hook.receiveAll().find(R"("behavior":"deny")"), std::string::npos);

    HttpClient gone = ask();
    gone.hangUp();
    EXPECT_TRUE(becomesAwaited(false));
}

TEST_F(ApprovalsTest, ReleasesWhoeverWaitsWhenApprovalsEnd) {
    controller.start();
    connections.installHooks(AgentKind::claude);
    HttpClient hook = ask();
    controller.setApprovalsEnabled(false);
    EXPECT_EQ(httpBody(hook.receiveAll()), "");
    EXPECT_FALSE(store.sessionAwaitingDecision());
    const std::uint16_t port = settings.port();
    EXPECT_EQ(httpBody(httpExchange(port, permissionRequest())), "");
    EXPECT_FALSE(read(".claude/settings.json").contains("decide"));
    controller.setApprovalsEnabled(true);
    EXPECT_TRUE(read(".claude/settings.json").contains("PermissionRequest decide"));

    // A request that was under way when approvals were turned off.
    scheduler.runPosted();
    HttpClient late(port);
    late.send(permissionRequest());
    ASSERT_TRUE(waitUntil([&] { return scheduler.posted() > 0; }));
    settings.setApprovalsEnabled(false);
    scheduler.runPosted();
    EXPECT_EQ(httpBody(late.receiveAll()), "");
    EXPECT_EQ(store.sessions().value("s").state, SessionState::needsInput);
    EXPECT_FALSE(store.sessionAwaitingDecision());

    controller.setApprovalsEnabled(true);
    controller.setApprovalsEnabled(false);
    home.makeReadOnly(".claude/settings.json");
    controller.setApprovalsEnabled(true);
    EXPECT_TRUE(connections.lastError()->startsWith("Couldn't update Claude Code's hooks: "));
    EXPECT_FALSE(settings.approvalsEnabled());
}

TEST_F(ApprovalsTest, LetsNobodyWaitWhereItIsShownOnNoDisplay) {
    controller.start();
    HttpClient hook = ask();
    settings.setDisplayMode(DisplayTargetMode::externalOnly);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(httpBody(hook.receiveAll()), "");
    EXPECT_FALSE(store.sessionAwaitingDecision());
    const std::uint16_t port = settings.port();
    EXPECT_EQ(httpBody(httpExchange(port, permissionRequest())), "");
    settings.setDisplayMode(DisplayTargetMode::all);
    scheduler.advance(Seconds(1));
    ask();
}

TEST_F(ApprovalsTest, ADigitAnswersThePromptOrOpensTheRecordThatCouldBeRead) {
    controller.start();
    store.apply(EventBuilder(CanonicalEvent::turnEnd).in("over").at("/over"));
    const auto press = [this](const char *key) {
        hotKeys.press(QLatin1String(key));
        scheduler.runPosted();
    };
    press("G");
    // Behind a fullscreen program nothing can be read, and the keys are that program's.
    overlay().setCovered(true);
    EXPECT_EQ(hotKeys.held(), "G");
    overlay().setCovered(false);
    EXPECT_EQ(hotKeys.held(), "G12345Esc");
    store.apply(EventBuilder::parked("a").given(R"({"command": "make"})"));
    scheduler.advance(Seconds(0.5));
    press("2");
    EXPECT_TRUE(store.sessionAwaitingDecision());
    scheduler.advance(Seconds(0.5));
    press("2");
    EXPECT_FALSE(store.sessionAwaitingDecision());

    // What comes in its place hasn't been read either.
    scheduler.advance(Seconds(0.6));
    press("1");
    scheduler.advance(Seconds(0.2));
    press("5"); // no row has this digit
    EXPECT_TRUE(store.sessions().contains("over"));
    press("1");
    EXPECT_FALSE(store.sessions().contains("over"));
    scheduler.advance(Seconds(1));
    EXPECT_EQ(hotKeys.held(), "G");
}

} // namespace
} // namespace morvane
