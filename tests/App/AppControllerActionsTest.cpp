#include "App/AppFixture.h"
#include "Core/Agents/AgentAdapter.h"
#include "Support/EventBuilder.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

using enum AgentKind;

class AppControllerActionsTest : public ControllerFixture {
protected:
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

    FakeLoginItem &loginItem() { return static_cast<FakeLoginItem &>(*platform.loginItem); }
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

TEST_F(AppControllerActionsTest, SwitchesTheNotificationsOfAllWhoHaveThem) {
    connections.setNotificationsSuppressed(true);
    EXPECT_FALSE(connections.notificationsSuppressed());

    home.write(".claude/settings.json", "{}");
    connections.setNotificationsSuppressed(true);
    EXPECT_TRUE(connections.notificationsSuppressed());
    makeReadOnly(".claude/settings.json");
    connections.setNotificationsSuppressed(false);
    EXPECT_EQ(complaint(), "Updating Claude Code's settings failed:");
    EXPECT_TRUE(connections.notificationsSuppressed());
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
    store.apply(EventBuilder(CanonicalEvent::turnEnd));
    for (const char *key : {"soundEnabled", "eventToken", "completedHistory"}) {
        EXPECT_FALSE(isStored(key)) << key;
    }
    EXPECT_TRUE(connections.installedAgents().isEmpty());
}

TEST_F(AppControllerActionsTest, OpensWhatItCanOfASessionThatIsOver) {
    store.apply(EventBuilder(CanonicalEvent::promptSubmit).with(&HookEvent::cwd, "/shop"));
    CompletedRecord record;
    record.cwd = "/shop";
    controller.reopenCompleted(record);
    EXPECT_TRUE(store.sessions().isEmpty());
}

} // namespace
} // namespace morvane
