#include "Core/Hooks/AgentConnections.h"

#include "Support/CoreWorld.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

using enum AgentKind;

class AgentConnectionsTest : public testing::Test, protected CoreWorld {
protected:
    /// The last failure without the system's own message.
    QString complaint() const {
        const QString error = connections.lastError().value_or(QString());
        return error.left(error.indexOf(": ") + 1);
    }

    AgentConnections connections{settings, scheduler};
};

TEST_F(AgentConnectionsTest, TakesWhatIsThereForKnownAndKeepsNewAgentsForWhoeverCanOfferThem) {
    home.write(".claude/settings.json");
    settings.setHasCompletedFirstRun(true);
    connections.watchForNewAgents();
    EXPECT_EQ(settings.knownAgents(), QStringList{"claude"});
    home.write(".codex/config.toml");
    scheduler.advance(Seconds(1801));
    EXPECT_EQ(settings.knownAgents(), QStringList{"claude"});
}

TEST_F(AgentConnectionsTest, ConnectsRepairsAndDisconnects) {
    connections.setNotificationsSuppressed(true);
    EXPECT_FALSE(connections.notificationsSuppressed()) << "nobody is there";
    home.write(".claude/settings.json", "{}");
    home.write(".codex/config.toml");
    connections.refreshStatus();
    EXPECT_FALSE(connections.hasDecidableAgent());

    connections.installHooks(codex);
    connections.installHooks(opencode);
    EXPECT_EQ(connections.installedAgents(), (QSet{codex, opencode}));
    EXPECT_TRUE(connections.hasDecidableAgent());
    // A connected agent can be disconnected even if it has left no trace of its own.
    EXPECT_EQ(connections.offeredAgents().size(), 3u);
    connections.uninstallHooks(codex);
    EXPECT_EQ(connections.installedAgents(), QSet{opencode});
    EXPECT_FALSE(connections.hasDecidableAgent());

    home.makeReadOnly(".claude/settings.json");
    connections.repairHooks(claude);
    EXPECT_EQ(complaint(), "Claude Code repair failed:");
    home.makeReadOnly(".claude/settings.json", false);
    connections.repairHooks(claude);
    EXPECT_EQ(connections.lastError(), std::nullopt);
    home.makeReadOnly(".claude/settings.json");
    connections.uninstallHooks(claude);
    EXPECT_EQ(complaint(), "Claude Code disconnect failed:");
    EXPECT_TRUE(connections.installedAgents().contains(claude));
    connections.setNotificationsSuppressed(true);
    EXPECT_EQ(complaint(), "Updating Claude Code's settings failed:");
    EXPECT_FALSE(connections.notificationsSuppressed());
}

TEST_F(AgentConnectionsTest, GivesNotificationsBackWhenEverythingGoesButOnlyWhatItHasSilenced) {
    const QString settingsFile = ".claude/settings.json";
    const QString suppression = "suppression of Claude Code's own notifications";
    for (const QByteArray before : {R"({"b": 1, "a": 2})", R"({"preferredNotifChannel": "bell"})",
                                    R"({"preferredNotifChannel": "notifications_disabled"})"}) {
        const bool isSilent = before.contains("disabled");
        for (const bool isConnected : {true, false}) {
            home.write(settingsFile, before);
            EXPECT_FALSE(connections.removeAll().contains(suppression));
            if (isConnected) {
                connections.installHooks(claude);
            }
            connections.setNotificationsSuppressed(true);
            EXPECT_TRUE(connections.notificationsSuppressed());
            EXPECT_EQ(connections.removeAll().contains(suppression), !isSilent);
            EXPECT_EQ(home.read(settingsFile), before);
        }
    }
    home.write(settingsFile, "{}");
    connections.setNotificationsSuppressed(true);
    home.makeReadOnly(settingsFile);
    EXPECT_TRUE(
        connections.removeAll().value(0).startsWith("⚠︎ could not remove " + suppression));
}

TEST_F(AgentConnectionsTest, TellsOfSettingsThatCannotBeUnderstoodAndWhereTheyAreKept) {
    const QString path = home.path(".claude/settings.json");
    const QString unknown = path + " could not be understood";
    const auto spoil = [&](const char *text) {
        home.writeEarlier(".claude/settings.json", text);
        connections.refreshStatus();
    };
    spoil("");
    EXPECT_EQ(connections.whyUnknown(claude), "");
    spoil("{1");
    EXPECT_EQ(connections.whyUnknown(claude), unknown);
    connections.uninstallHooks(claude);
    EXPECT_EQ(connections.notice(), unknown);
    EXPECT_EQ(home.read(".claude/settings.json"), "{1");
    const auto replaced = [&](const char *ending) {
        EXPECT_EQ(connections.whyUnknown(claude), "");
        EXPECT_EQ(connections.lastError(), std::nullopt);
        return connections.notice() ==
               unknown + " and has been replaced. What it held is in " + path + ending;
    };
    connections.installHooks(claude);
    EXPECT_TRUE(replaced(".morvane-unreadable"));
    connections.uninstallHooks(claude);
    EXPECT_EQ(connections.notice(), std::nullopt);
    spoil("{2");
    connections.setNotificationsSuppressed(true);
    EXPECT_TRUE(replaced(".morvane-unreadable-2"));
    connections.setLastError("later");
    EXPECT_EQ(connections.notice(), "later");
}

// At a login the PATH is shorter than in a terminal, so that the release isn't found.
TEST_F(AgentConnectionsTest, LeavesTheEntriesOfAReleaseThatCanNoLongerBeFound) {
    const std::tuple<AgentKind, const char *, const char *, const char *> agents[] = {
        {qwen, "qwen", "@qwen-code/qwen-code", ".qwen/settings.json"},
        {codex, "codex", "@openai/codex", ".codex/hooks.json"}};
    const QString path = qEnvironmentVariable("PATH");
    const QByteArray before = "// mine\n{\"hooks\": {\"Stop\": []}}\n";
    for (const auto &[kind, command, package, settingsFile] : agents) {
        const QString folder = QString("shells/%1").arg(command);
        home.write(folder + "/" + command);
        home.write(folder + "/package.json",
                   QString(R"({"name":"%1","version":"0.200.0"})").arg(package).toUtf8());
        home.set("PATH", home.path(folder));
        home.write(settingsFile, before);
        connections.installHooks(kind);
        const QByteArray written = home.read(settingsFile);
        home.set("PATH", path);
        connections.renew();
        connections.refreshStatus();
        EXPECT_EQ(home.read(settingsFile), written) << command;
        EXPECT_TRUE(connections.health(kind).entriesCurrent) << command;
    }
    // Another change doesn't turn them into the entries of a different release.
    for (const bool enabled : {false, true}) {
        settings.setApprovalsEnabled(enabled);
        connections.rewriteDecisionHooks();
        EXPECT_EQ(home.read(".qwen/settings.json").contains(" decide"), enabled);
        EXPECT_FALSE(home.read(".qwen/settings.json").contains("BeforeAgent"));
    }
    connections.removeAll();
    for (const auto &[kind, command, package, settingsFile] : agents) {
        EXPECT_EQ(home.read(settingsFile), before) << command;
    }
}

} // namespace
} // namespace morvane
