#include "App/AppController.h"
#include "App/FakePlatform.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Settings/Defaults.h"
#include "Support/EventBuilder.h"
#include "Support/HttpClient.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <QTcpServer>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using enum AgentKind;

class AppControllerActionsTest : public testing::Test {
protected:
    AppControllerActionsTest() {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        settings.setPort(probe.serverPort());
    }

    static QList<AgentKind> kinds(const std::vector<const AgentAdapter *> &adapters) {
        QList<AgentKind> result;
        for (const AgentAdapter *adapter : adapters) {
            result << adapter->kind();
        }
        return result;
    }

    /// The last failure without what the system says of it.
    QString complaint() const {
        const QString error = connections.lastError().value_or(QString());
        return error.left(error.indexOf(": ") + 1);
    }

    void makeReadOnly(const char *path, bool readOnly = true) const {
        QFile::setPermissions(home.path(QLatin1String(path)),
                              readOnly ? QFile::ReadOwner : QFile::ReadOwner | QFile::WriteOwner);
    }

    QByteArray read(const char *path) const { return home.read(QLatin1String(path)); }
    FakeLoginItem &loginItem() { return static_cast<FakeLoginItem &>(*platform.loginItem); }

    TemporaryHome home;
    Defaults defaults{home.path("config"), "test"};
    MorvaneSettings settings{defaults};
    PlatformServices platform = fakePlatform(std::make_unique<ManualScheduler>());
    AppController controller{settings, platform};
    AgentConnections &connections = controller.connections();
};

TEST_F(AppControllerActionsTest, ConnectsRepairsAndDisconnects) {
    home.write(".claude/settings.json", "{}");
    home.write(".codex/config.toml");
    connections.refreshStatus();
    EXPECT_EQ(kinds(connections.offeredAgents()), (QList{claude, codex}));
    EXPECT_FALSE(connections.hasDecidableAgent());

    connections.installHooks(codex);
    connections.installHooks(opencode);
    EXPECT_EQ(connections.installedAgents(), (QSet{codex, opencode}));
    EXPECT_TRUE(connections.hasDecidableAgent());
    // What is connected can be disconnected, also when its agent has left no trace.
    EXPECT_EQ(kinds(connections.offeredAgents()), (QList{claude, codex, opencode}));
    connections.uninstallHooks(codex);
    EXPECT_EQ(connections.installedAgents(), QSet{opencode});
    EXPECT_FALSE(connections.hasDecidableAgent());

    makeReadOnly(".claude/settings.json");
    connections.installHooks(claude);
    EXPECT_EQ(complaint(), "Claude Code connect failed:");
    connections.repairHooks(claude);
    EXPECT_EQ(complaint(), "Claude Code repair failed:");
    makeReadOnly(".claude/settings.json", false);
    connections.repairHooks(claude);
    EXPECT_EQ(connections.lastError(), std::nullopt);
    makeReadOnly(".claude/settings.json");
    connections.uninstallHooks(claude);
    EXPECT_EQ(complaint(), "Claude Code disconnect failed:");
    EXPECT_TRUE(connections.installedAgents().contains(claude));
}

TEST_F(AppControllerActionsTest, ReleasesWhoeverWaitsWhenApprovalsEnd) {
    controller.start();
    ASSERT_TRUE(controller.server());
    connections.installHooks(claude);
    connections.installHooks(gemini);
    const QByteArray gemini = read(".gemini/settings.json");
    const std::uint16_t port = controller.server()->boundPort();
    HttpClient hook(port);
    hook.send(httpPost("/event",
                       {{"x-morvane-token", settings.eventToken().toStdString()},
                        {"x-morvane-agent", "claude"},
                        {"x-hook-event", "PermissionRequest"},
                        {"x-morvane-decision", "1"}},
                       R"({"session_id":"s"})"));
    auto &scheduler = static_cast<ManualScheduler &>(*platform.scheduler);
    ASSERT_TRUE(waitUntil([&] {
        scheduler.runPosted();
        return controller.store().sessionAwaitingDecision().has_value();
    }));
    controller.setApprovalsEnabled(false);
    EXPECT_EQ(httpBody(hook.receiveAll()), "");
    EXPECT_FALSE(read(".claude/settings.json").contains("decide"));
    controller.setApprovalsEnabled(true);
    EXPECT_TRUE(read(".claude/settings.json").contains("PermissionRequest decide"));
    EXPECT_EQ(read(".gemini/settings.json"), gemini);

    makeReadOnly(".claude/settings.json");
    controller.setApprovalsEnabled(true);
    EXPECT_EQ(complaint(), "Couldn't update Claude Code's hooks:");
    EXPECT_FALSE(settings.approvalsEnabled());
}

TEST_F(AppControllerActionsTest, SwitchesTheNotificationsOfAllWhoHaveThem) {
    connections.setNotificationsSuppressed(true);
    EXPECT_FALSE(connections.notificationsSuppressed());

    home.write(".claude/settings.json", R"({"preferredNotifChannel":"iterm2","a":1})");
    connections.setNotificationsSuppressed(true);
    EXPECT_TRUE(connections.notificationsSuppressed());
    EXPECT_TRUE(read(".claude/settings.json").contains("notifications_disabled"));
    makeReadOnly(".claude/settings.json");
    connections.setNotificationsSuppressed(false);
    EXPECT_EQ(complaint(), "Updating Claude Code's settings failed:");
    EXPECT_TRUE(connections.notificationsSuppressed());
    makeReadOnly(".claude/settings.json", false);
    connections.setNotificationsSuppressed(false);
    EXPECT_EQ(read(".claude/settings.json"), "{\n  \"a\": 1\n}\n");
}

TEST_F(AppControllerActionsTest, StartsAtLoginOrSaysWhyNot) {
    controller.setLaunchAtLogin(true);
    EXPECT_TRUE(controller.launchAtLogin());
    loginItem().failure = Failure{"the disk is full"};
    controller.setLaunchAtLogin(false);
    EXPECT_EQ(connections.lastError(), "Launch-at-login change failed: the disk is full");
    EXPECT_TRUE(controller.launchAtLogin());
}

TEST_F(AppControllerActionsTest, RemovesEverythingAndReports) {
    settings.setSoundEnabled(false);
    home.write(".claude/settings.json", R"({"model":"opus","statusLine":{"command":"mine"}})");
    connections.installHooks(claude);
    EXPECT_EQ(connections.statusLineBlockedAgents(), std::vector{claude});
    connections.installHooks(kimi);
    controller.setLaunchAtLogin(true);
    makeReadOnly(".kimi/config.toml");
    const auto remove = [this] { return controller.removeEverything().split("\n• "); };
    const QStringList partly = remove();
    ASSERT_EQ(partly.size(), 5);
    EXPECT_EQ(partly[0], "Claude Code hooks");
    EXPECT_TRUE(partly[1].startsWith("⚠︎ could not remove Kimi CLI hooks: "));
    EXPECT_EQ(partly[2], "⚠︎ could not remove ~/.morvane: hooks that are left call it");
    EXPECT_EQ(partly[3], "login item");
    EXPECT_TRUE(QFile::exists(home.path(".morvane/hook.sh")));

    makeReadOnly(".kimi/config.toml", false);
    EXPECT_EQ(remove(),
              (QStringList{"Kimi CLI hooks", "~/.morvane", "preferences and session history"}));
    EXPECT_FALSE(read(".claude/settings.json").contains("hook.sh"));
    EXPECT_FALSE(QFile::exists(home.path(".morvane")));
    EXPECT_FALSE(loginItem().enabled);

    // What still happens before the program is quit leaves no trace either.
    HookEvent late;
    late.kind = CanonicalEvent::turnEnd;
    late.sessionID = "late";
    controller.store().apply(late);
    Defaults reread(home.path("config"), "test");
    EXPECT_FALSE(reread.contains("soundEnabled"));
    EXPECT_FALSE(reread.contains("eventToken"));
    EXPECT_FALSE(reread.contains("completedHistory"));
    EXPECT_TRUE(connections.installedAgents().isEmpty());
}

TEST_F(AppControllerActionsTest, OpensWhatItCanOfASessionThatIsOver) {
    controller.store().apply(
        EventBuilder(CanonicalEvent::promptSubmit).with(&HookEvent::cwd, "/shop"));
    CompletedRecord record;
    record.cwd = "/shop";
    controller.reopenCompleted(record);
    EXPECT_TRUE(controller.store().sessions().isEmpty());
}

} // namespace
} // namespace morvane
