#include "App/AppController.h"

#include "App/FakePlatform.h"
#include "Core/Settings/Defaults.h"
#include "Support/HttpClient.h"
#include "Support/ManualPool.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QTcpServer>
#include <gtest/gtest.h>

namespace morvane {
namespace {

class AppControllerTest : public testing::Test {
protected:
    AppControllerTest() {
        auto manual = std::make_unique<ManualScheduler>();
        scheduler = manual.get();
        platform = fakePlatform(std::move(manual));
        auto pool = std::make_unique<ManualPool>();
        background = pool.get();
        platform.background = std::move(pool);
    }

    std::string permissionRequest() const {
        return httpPost("/event",
                        {{"x-morvane-token", settings.eventToken().toStdString()},
                         {"x-hook-event", "PermissionRequest"},
                         {"x-morvane-decision", "1"}},
                        R"({"session_id":"s","tool_name":"Bash"})");
    }

    QByteArray script() const { return home.read(".morvane/hook.sh"); }

    /// Takes a port for as long as the result lives; any free one for 0.
    static std::unique_ptr<QTcpServer> taken(std::uint16_t port) {
        auto server = std::make_unique<QTcpServer>();
        server->listen(QHostAddress::LocalHost, port);
        return server;
    }

    TemporaryHome home;
    Defaults defaults{home.path("config"), "test"};
    MorvaneSettings settings{defaults};
    PlatformServices platform;
    ManualScheduler *scheduler = nullptr;
    ManualPool *background = nullptr;
};

TEST_F(AppControllerTest, MovesToAFreePortAndTellsEverybodyWhoNeedsIt) {
    const auto blocker = taken(0);
    settings.setPort(blocker->serverPort());
    home.write(".codex/hooks.json", R"({"hooks":{"Stop":[{"command":"/old/.morvane/hook.sh"}]}})");
    home.write(".config/opencode/plugins/morvane.js", "old");
    home.write(".claude/settings.json", "{}");
    AppController controller(settings, platform);
    controller.start();
    ASSERT_TRUE(controller.server());
    const std::uint16_t port = controller.server()->boundPort();
    EXPECT_GT(port, blocker->serverPort());
    EXPECT_EQ(settings.port(), port);
    Defaults reread(home.path("config"), "test");
    EXPECT_EQ(MorvaneSettings(reread).port(), port);
    EXPECT_TRUE(script().contains("port=" + QByteArray::number(port) + "\n"));
    EXPECT_TRUE(home.read(QStringLiteral(".config/opencode/plugins/morvane.js"))
                    .contains(QByteArray::number(port)));
    EXPECT_TRUE(home.read(QStringLiteral(".codex/hooks.json")).contains("codex SessionEnd"));
    EXPECT_EQ(home.read(".claude/settings.json"), "{}");
    EXPECT_EQ(controller.connections().installedAgents(),
              (QSet{AgentKind::codex, AgentKind::opencode}));
    EXPECT_EQ(controller.serverStatus(), QStringLiteral("listening on 127.0.0.1:%1").arg(port));
    EXPECT_FALSE(controller.connections().lastError());
}

TEST_F(AppControllerTest, GoesOnWithoutAServerAndSaysWhy) {
    std::vector<std::unique_ptr<QTcpServer>> blockers;
    blockers.push_back(taken(0));
    const std::uint16_t first = blockers.front()->serverPort();
    for (unsigned port = first + 1u; port <= first + 20u && port <= 65535u; ++port) {
        blockers.push_back(taken(static_cast<std::uint16_t>(port)));
    }
    settings.setPort(first);
    AppController controller(settings, platform);
    controller.start();
    EXPECT_EQ(controller.server(), nullptr);
    EXPECT_EQ(controller.serverStatus(), "not running");
    EXPECT_EQ(controller.connections().lastError(),
              "Event server failed to start: Address already in use");
    EXPECT_EQ(settings.port(), first);
    EXPECT_TRUE(script().isEmpty());

    HookEvent event;
    event.kind = CanonicalEvent::promptSubmit;
    event.sessionID = "s";
    controller.store().apply(event);
    EXPECT_EQ(controller.store().sessions().size(), 1);
}

TEST_F(AppControllerTest, CarriesADecisionBackToTheHook) {
    const auto free = taken(0);
    settings.setPort(free->serverPort());
    free->close();
    AppController controller(settings, platform);
    controller.start();
    const std::uint16_t port = controller.server()->boundPort();
    const auto ask = [&](HttpClient &hook) {
        hook.send(permissionRequest());
        return waitUntil([&] {
            scheduler->runPosted();
            return controller.store().sessionAwaitingDecision().has_value();
        });
    };
    HttpClient hook(port);
    ASSERT_TRUE(ask(hook));
    controller.store().decide("s", AgentDecision::deny());
    EXPECT_NE(hook.receiveAll().find(R"("behavior":"deny")"), std::string::npos);

    HttpClient gone(port);
    ASSERT_TRUE(ask(gone));
    gone.hangUp();
    EXPECT_TRUE(waitUntil([&] {
        scheduler->runPosted();
        return !controller.store().sessionAwaitingDecision();
    }));

    settings.setApprovalsEnabled(false);
    EXPECT_EQ(httpBody(httpExchange(port, permissionRequest())), "");
}

TEST_F(AppControllerTest, ShowsWhatRanBeforeItStarted) {
    const QByteArray model = R"({"type":"assistant","cwd":"/p","message":{"model":"claude-a"}})";
    home.write(".claude/projects/p/s.jsonl", model);
    AppController controller(settings, platform);
    controller.start();
    // The start doesn't wait for the disk.
    EXPECT_EQ(background->waiting(), 1u);
    EXPECT_TRUE(controller.store().sessions().isEmpty());
    background->runAll();
    scheduler->runPosted();
    EXPECT_EQ(controller.store().sessions().value(QStringLiteral("s")).cwd, "/p");
    background->runAll();
    scheduler->runPosted();
    EXPECT_EQ(controller.store().sessions().value(QStringLiteral("s")).model, "a");
}

TEST_F(AppControllerTest, OffersEachNewAgentOnce) {
    home.write(".claude/settings.json");
    std::vector<std::vector<AgentKind>> offers;
    AppController controller(settings, platform);
    QObject::connect(&controller.connections(), &AgentConnections::newAgentsDetected, &controller,
                     [&](const std::vector<AgentKind> &kinds) { offers.push_back(kinds); });
    settings.setHasCompletedFirstRun(true);
    controller.start();
    // An installation that has no list yet takes what is there for known.
    EXPECT_EQ(settings.knownAgents(), QStringList{"claude"});
    EXPECT_TRUE(offers.empty());

    home.write(".codex/config.toml");
    home.write(".kimi/.keep");
    scheduler->advance(Seconds(1801));
    EXPECT_EQ(offers, (std::vector<std::vector<AgentKind>>{{AgentKind::codex}}));
    scheduler->advance(Seconds(3600));
    EXPECT_EQ(offers.size(), 1u);
}

TEST_F(AppControllerTest, DoesNotLookForAgentsBeforeTheFirstRunIsOver) {
    home.write(".claude/settings.json");
    AppController controller(settings, platform);
    controller.start();
    scheduler->advance(Seconds(4000));
    EXPECT_EQ(settings.knownAgents(), std::nullopt);
}

TEST_F(AppControllerTest, KeepsNewAgentsForWhoeverCanOfferThem) {
    settings.setHasCompletedFirstRun(true);
    settings.setKnownAgents(QStringList());
    home.write(".claude/settings.json");
    AppController controller(settings, platform);
    controller.start();
    EXPECT_EQ(settings.knownAgents(), QStringList());
    std::vector<AgentKind> offered;
    QObject::connect(&controller.connections(), &AgentConnections::newAgentsDetected, &controller,
                     [&](const std::vector<AgentKind> &kinds) { offered = kinds; });
    scheduler->advance(Seconds(1801));
    EXPECT_EQ(offered, std::vector{AgentKind::claude});
}

} // namespace
} // namespace morvane
