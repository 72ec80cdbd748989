#include "App/AppFixture.h"
#include "Support/EventBuilder.h"
#include "Support/HttpClient.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

class AppControllerTest : public ControllerFixture {
protected:
    std::string permissionRequest() const {
        return httpPost("/event",
                        {{"x-morvane-token", settings.eventToken().toStdString()},
                         {"x-hook-event", "PermissionRequest"},
                         {"x-morvane-decision", "1"}},
                        R"({"session_id":"s","tool_name":"Bash"})");
    }

    /// A hook that waits for a decision.
    HttpClient ask() {
        HttpClient hook(controller.server()->boundPort());
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

TEST_F(AppControllerTest, MovesToAFreePortAndTellsEverybodyWhoNeedsIt) {
    const auto blocker = takenPorts(1);
    settings.setPort(blocker.front()->serverPort());
    home.write(".codex/hooks.json", R"({"hooks":{"Stop":[{"command":"/old/.morvane/hook.sh"}]}})");
    home.write(".config/opencode/plugins/morvane.js", "old");
    home.write(".claude/settings.json", "{}");
    controller.start();
    ASSERT_TRUE(controller.server());
    const std::uint16_t port = controller.server()->boundPort();
    EXPECT_GT(port, blocker.front()->serverPort());
    EXPECT_EQ(settings.port(), port);
    Defaults reread(home.path("config"), "test");
    EXPECT_EQ(MorvaneSettings(reread).port(), port);
    EXPECT_TRUE(read(".morvane/hook.sh").contains("port=" + QByteArray::number(port) + "\n"));
    EXPECT_TRUE(read(".config/opencode/plugins/morvane.js").contains(QByteArray::number(port)));
    EXPECT_TRUE(read(".codex/hooks.json").contains("codex SessionEnd"));
    EXPECT_EQ(read(".claude/settings.json"), "{}");
    EXPECT_EQ(connections.installedAgents(), (QSet{AgentKind::codex, AgentKind::opencode}));
    EXPECT_EQ(controller.serverStatus(), QStringLiteral("listening on 127.0.0.1:%1").arg(port));
    EXPECT_FALSE(connections.lastError());
}

TEST_F(AppControllerTest, GoesOnWithoutAServerAndSaysWhy) {
    const auto blockers = takenPorts(21);
    const std::uint16_t first = blockers.front()->serverPort();
    settings.setPort(first);
    controller.start();
    EXPECT_EQ(controller.server(), nullptr);
    EXPECT_EQ(controller.serverStatus(), "not running");
    EXPECT_EQ(connections.lastError(), "Event server failed to start: Address already in use");
    EXPECT_EQ(settings.port(), first);
    EXPECT_EQ(read(".morvane/hook.sh"), "");

    store.apply(EventBuilder(CanonicalEvent::promptSubmit));
    EXPECT_EQ(store.sessions().size(), 1);
}

TEST_F(AppControllerTest, CarriesADecisionBackToTheHook) {
    controller.start();
    HttpClient hook = ask();
    store.decide("s", AgentDecision::deny());
    EXPECT_NE(hook.receiveAll().find(R"("behavior":"deny")"), std::string::npos);

    HttpClient gone = ask();
    gone.hangUp();
    EXPECT_TRUE(becomesAwaited(false));
}

TEST_F(AppControllerTest, ReleasesWhoeverWaitsWhenApprovalsEnd) {
    controller.start();
    connections.installHooks(AgentKind::claude);
    HttpClient hook = ask();
    controller.setApprovalsEnabled(false);
    EXPECT_EQ(httpBody(hook.receiveAll()), "");
    const std::uint16_t port = controller.server()->boundPort();
    EXPECT_EQ(httpBody(httpExchange(port, permissionRequest())), "");
    EXPECT_FALSE(read(".claude/settings.json").contains("decide"));
    controller.setApprovalsEnabled(true);
    EXPECT_TRUE(read(".claude/settings.json").contains("PermissionRequest decide"));

    makeReadOnly(".claude/settings.json");
    controller.setApprovalsEnabled(true);
    EXPECT_TRUE(
        connections.lastError().value_or("").startsWith("Couldn't update Claude Code's hooks: "));
    EXPECT_FALSE(settings.approvalsEnabled());
}

TEST_F(AppControllerTest, ShowsWhatRanBeforeItStarted) {
    const QByteArray model = R"({"type":"assistant","cwd":"/p","message":{"model":"claude-a"}})";
    home.write(".claude/projects/p/s.jsonl", model);
    controller.start();
    // The start doesn't wait for the disk.
    EXPECT_EQ(background.waiting(), 1u);
    EXPECT_TRUE(store.sessions().isEmpty());
    background.runAll();
    scheduler.runPosted();
    EXPECT_EQ(store.sessions().value("s").cwd, "/p");
    background.runAll();
    scheduler.runPosted();
    EXPECT_EQ(store.sessions().value("s").model, "a");
}

TEST_F(AppControllerTest, KeepsEachNewAgentForWhoeverCanOfferItAndTellsOfItOnce) {
    home.write(".claude/settings.json");
    settings.setHasCompletedFirstRun(true);
    controller.start();
    // An installation that has no list yet takes what is there for known.
    EXPECT_EQ(settings.knownAgents(), QStringList{"claude"});
    home.write(".codex/config.toml");
    scheduler.advance(Seconds(1801));
    EXPECT_EQ(settings.knownAgents(), QStringList{"claude"});

    std::vector<std::vector<AgentKind>> offers;
    QObject::connect(&connections, &AgentConnections::newAgentsDetected, &controller,
                     [&](const std::vector<AgentKind> &kinds) { offers.push_back(kinds); });
    scheduler.advance(Seconds(5400));
    EXPECT_EQ(offers, (std::vector<std::vector<AgentKind>>{{AgentKind::codex}}));
}

} // namespace
} // namespace morvane
