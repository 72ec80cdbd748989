#include "App/AppFixture.h"
#include "Support/EventBuilder.h"
#include "Support/HttpClient.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>

namespace morvane {
namespace {

using enum AgentKind;

class AppControllerTest : public ControllerFixture {
protected:
    /// The end of a turn in a pane that takes what is typed.
    EventBuilder endInPane() {
        static_cast<FakeProcesses &>(*platform.processes).listeners["/s"] = 1;
        PaneLocator pane;
        pane.tmux = "%1";
        pane.tmuxServer = "/s,1,0";
        return EventBuilder(CanonicalEvent::turnEnd)
            .with(&HookEvent::pane, pane)
            .with(&HookEvent::ttyName, QString("/dev/pts/5"));
    }

    FakeTools &tools = static_cast<FakeTools &>(*platform.tools);
};

TEST_F(AppControllerTest, TakesTheLimitsFromAStatusLineAndTellsAMilestoneToWhomeverWorks) {
    controller.start();
    httpExchange(settings.port(),
                 httpPost("/usage",
                          {{"x-morvane-token", settings.eventToken().toStdString()},
                           {"x-morvane-agent", "claude"}},
                          R"({"rate_limits":{"five_hour":{"used_percentage":91}}})"));
    scheduler.runPosted();
    store.apply(EventBuilder(CanonicalEvent::promptSubmit).of(codex).in("other"));
    store.apply(EventBuilder(CanonicalEvent::sessionStart));
    EXPECT_FALSE(controller.usage().activeMilestone());
    store.apply(EventBuilder(CanonicalEvent::promptSubmit));
    EXPECT_EQ(controller.usage().activeMilestone(),
              (UsageMilestone{UsageWindowKind::session, 0.90}));
}

TEST_F(AppControllerTest, MovesToAFreePortAndTellsEverybodyWhoNeedsIt) {
    // All ports that are tried are taken, but the last.
    auto blockers = takenPorts(21);
    while (!blockers.back()->isListening()) {
        blockers = takenPorts(21);
    }
    blockers.pop_back();
    settings.setPort(blockers.front()->serverPort());
    home.write(".codex/hooks.json", R"({"hooks":{"Stop":[{"command":"/old/.morvane/hook.sh"}]}})");
    home.write(".config/opencode/plugins/morvane.js", "old");
    home.write(".claude/settings.json", "{}");
    controller.start();
    const std::uint16_t port = settings.port();
    EXPECT_EQ(port, blockers.front()->serverPort() + 20);
    EXPECT_TRUE(read(".morvane/hook.sh").contains("port=" + QByteArray::number(port) + "\n"));
    EXPECT_TRUE(read(".config/opencode/plugins/morvane.js").contains(QByteArray::number(port)));
    EXPECT_TRUE(read(".codex/hooks.json").contains("codex SessionEnd"));
    EXPECT_EQ(read(".claude/settings.json"), "{}");
    EXPECT_EQ(connections.installedAgents(), (QSet{codex, opencode}));
    EXPECT_EQ(controller.serverStatus(), QStringLiteral("listening on 127.0.0.1:%1").arg(port));
}

TEST_F(AppControllerTest, GoesOnWithoutAServerAndSaysWhy) {
    const auto blockers = takenPorts(21);
    const std::uint16_t first = blockers.front()->serverPort();
    settings.setPort(first);
    controller.start();
    EXPECT_EQ(controller.serverStatus(), "not running");
    EXPECT_EQ(connections.lastError(), "Event server failed to start: Address already in use");
    EXPECT_EQ(settings.port(), first);
    EXPECT_EQ(read(".morvane/hook.sh"), "");
    // The failure stays on show, whatever else succeeds.
    connections.installHooks(claude);
    EXPECT_EQ(connections.notice(), "Event server failed to start: Address already in use");
}

TEST_F(AppControllerTest, ShowsWhatRanBeforeItStartedInSilence) {
    settings.setSoundEnabled(true);
    const QByteArray model = R"({"type":"assistant","cwd":"/p","message":{"model":"claude-a"}})";
    home.write(".claude/projects/p/s.jsonl", model);
    static_cast<FakeProcesses &>(*platform.processes).folders["claude"] = QStringList{"/p"};
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
    const auto &heard = static_cast<FakeSoundPlayer &>(*platform.sounds).played;
    EXPECT_TRUE(heard.empty());
    store.apply(EventBuilder(CanonicalEvent::needsInput));
    EXPECT_EQ(heard.size(), 1U);
}

// The search for sessions, which may run until the pool ends, uses the processes.
TEST_F(AppControllerTest, WhatThePoolCallsOutlivesIt) {
    const void *const processes = &platform.processes;
    const void *const pool = &platform.background;
    EXPECT_LT(processes, pool) << "what is declared first goes last";
}

TEST_F(AppControllerTest, RemovesEverythingButWhatIsPeoplesOwnAndReports) {
    settings.setSoundEnabled(false);
    controller.setLaunchAtLogin(true);
    const QByteArray own = R"({"statusLine": {"command": "own"}})";
    home.write(".claude/settings.json", own);
    for (const AgentKind kind : {claude, gemini, qwen, qoder}) {
        connections.installHooks(kind);
    }
    home.makeReadOnly(".qwen/settings.json");
    EXPECT_EQ(controller.removeEverything(),
              "Claude Code hooks\n• Gemini CLI hooks\n"
              "• ⚠︎ could not remove Qwen Code hooks: " +
                  home.path(".qwen/settings.json") +
                  " could not be written: it is read-only\n• Qoder hooks\n"
                  "• ~/.morvane\n• login item\n• preferences and session history");
    EXPECT_EQ(read(".claude/settings.json"), own);
    EXPECT_TRUE(read(".qwen/settings.json").contains("hook.sh"));
    EXPECT_FALSE(QFile::exists(home.path(".morvane")));
    EXPECT_FALSE(platform.loginItem->isEnabled());

    // Files that may hold hooks of ours, and others that can't be removed.
    home.makeReadOnly(".qwen/settings.json", false);
    home.writeEarlier(".claude/settings.json",
                      R"({"hooks":{"Stop":[{"command":"~/.morvane/hook.sh"}]})");
    home.writeEarlier(".qoder/settings.json", R"({"hooks":)");
    home.writeEarlier(".kimi/config.toml", "[[hooks]]\ncommand = '/.morvane/hook.sh'\nb = \n");
    QFile::remove(home.path(".gemini/settings.json"));
    for (const char *file :
         {".gemini/settings.json", ".config/opencode/plugins/morvane.js", "config/test.json"}) {
        home.write(QLatin1String(file) + QLatin1String("/in the way"));
    }
    const QString kept = "⚠︎ could not remove %1 hooks: " + home.path("%2 could not be ");
    EXPECT_EQ(controller.removeEverything(),
              kept.arg("Claude Code", ".claude/settings.json") + "understood\n• " +
                  kept.arg("Gemini CLI", ".gemini/settings.json") + "read\n• " +
                  kept.arg("OpenCode", ".config/opencode/plugins/morvane.js") +
                  "removed: Is a directory\n• " + kept.arg("Kimi CLI", ".kimi/config.toml") +
                  "understood\n• Qwen Code hooks\n• " +
                  "⚠︎ could not remove preferences and session history");
    // A remainder of ours is removed without a connection, too.
    QDir(home.path("config/test.json")).removeRecursively();
    home.write(".claude/settings.json", R"({"statusLine":{"command":"/.morvane/statusline.sh"}})");
    EXPECT_TRUE(controller.removeEverything().startsWith("Claude Code hooks\n"));
    EXPECT_EQ(read(".claude/settings.json"), "{}\n");
    QDir(home.path(".config/opencode")).removeRecursively();
    connections.refreshStatus();
    EXPECT_FALSE(isStored("eventToken"));
    EXPECT_EQ(controller.usage().unavailableReason(), "turned off in Settings");
    EXPECT_TRUE(connections.installedAgents().isEmpty());
}

TEST_F(AppControllerTest, GoesToWhereASessionRunsOrHasRun) {
    const QStringList &calls = static_cast<FakeHostWindows &>(*platform.hostWindows).calls;
    const auto prompt = EventBuilder(CanonicalEvent::promptSubmit).at("/shop");
    store.apply(prompt.with(&HookEvent::ttyName, QString("/dev/pts/1")));
    controller.select(store.sessions().value("s"));
    EXPECT_EQ(calls, QStringList());
    store.apply(prompt.with(&HookEvent::hostBundleID, QString("foot")));
    controller.select(store.sessions().value("s"));
    EXPECT_EQ(calls.last(), "launch foot");
    store.apply(EventBuilder(CanonicalEvent::turnEnd));
    CompletedRecord record = store.completedHistory().first();
    record.hostBundleID = "kgx";
    controller.reopenCompleted(record);
    EXPECT_EQ(calls.last(), "launch kgx");
    EXPECT_TRUE(store.sessions().isEmpty());

    for (const char *id : {"other", "nowhere"}) {
        store.apply(EventBuilder(CanonicalEvent::turnEnd).in(id));
    }
    controller.reopenCompleted(store.completedHistory().first());
    EXPECT_EQ(store.sessions().keys(), QStringList{"other"});
}

TEST_F(AppControllerTest, TypesAReplyOnlyIntoASessionThatIsStillAtItsEnd) {
    const auto end = endInPane();
    store.apply(end);
    const Session finished = store.sessions().value("s");
    QList<bool> outcomes;
    const auto told = [&](bool isSent) { outcomes << isSent; };
    controller.reply(finished, "go on", told);
    EXPECT_EQ(tools.running(), 1u);
    EXPECT_TRUE(store.sessions().value("s").acknowledged);
    const auto typeAll = [&] {
        while (tools.running() > 0) {
            tools.finish("/dev/pts/5 claude");
            scheduler.advance(Seconds(1));
        }
    };
    typeAll();
    // An agent that asks for a permission by now would take the final Return for a yes.
    store.apply(EventBuilder(CanonicalEvent::needsInput));
    controller.reply(finished, "go on", told);
    EXPECT_EQ(tools.running(), 0u);
    EXPECT_EQ(outcomes, QList<bool>({true, false}));
    // The session was stopped, and another one was started in the same pane.
    store.apply(end);
    controller.reply(finished, "go on", told);
    EXPECT_EQ(tools.running(), 1u);
    scheduler.advance(Seconds(1));
    store.apply(EventBuilder(end).in("other"));
    typeAll();
    controller.reply(finished, "go on", told);
    controller.reply(store.sessions().value("other"), "go on", told);
    typeAll();
    EXPECT_EQ(outcomes, QList<bool>({true, false, false, false, true}));
}

TEST_F(AppControllerTest, OffersAReplyThatWasNotSentUntilItsSessionIsGone) {
    addFakeScreen(platform);
    controller.start();
    const auto end = endInPane().at("/shop");
    store.apply(end);
    const auto reply = [this] {
        controller.presenterManager()->presentPanel();
        scheduler.advance(Seconds(1));
        return shownControl<QAbstractButton>(overlay().widget(), "Reply to shop");
    };
    QAbstractButton *const button = reply();
    ASSERT_NE(button, nullptr);
    button->click();
    auto *field = button->parentWidget()->findChild<QLineEdit *>();
    QTest::keyClicks(field, "go on");
    QTest::keyClick(field, Qt::Key_Return);
    tools.finish("of another terminal");
    EXPECT_NE(reply(), nullptr);
    store.apply(end.with(&HookEvent::kind, CanonicalEvent::sessionEnd));
    EXPECT_EQ(reply(), nullptr);
}

TEST_F(AppControllerTest, CountsAsSeenWhatAPersonGoesTo) {
    addFakeScreen(platform);
    controller.start();
    store.apply(EventBuilder(CanonicalEvent::turnEnd).in("s"));
    emit platform.foreground->activated("org.mozilla.firefox");
    EXPECT_FALSE(store.sessions().value("s").acknowledged);
    emit platform.foreground->activated("net.kovidgoyal.kitty");
    EXPECT_TRUE(store.sessions().value("s").acknowledged);
    store.apply(EventBuilder(CanonicalEvent::turnEnd)
                    .in("editor")
                    .with(&HookEvent::hostBundleID, "com.microsoft.VSCode"));
    emit platform.foreground->activated("com.microsoft.VSCode");
    EXPECT_FALSE(store.sessions().value("editor").acknowledged);

    store.apply(EventBuilder(CanonicalEvent::turnEnd).in("other"));
    controller.presenterManager()->presentPanel();
    controller.select(store.sessions().value("other"));
    EXPECT_TRUE(store.sessions().value("other").acknowledged);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(hotKeys.held(), "G");
}

TEST_F(AppControllerTest, TheCapsuleStandsInForATrayUntilOneComesAndAgainOnceItHasGone) {
    home.write(".claude/settings.json", "{}");
    addFakeScreen(platform);
    controller.start();
    const auto isShownBeside = [this](bool tray) {
        statusItemHost().setPresent(tray);
        return isOverlayShown();
    };
    EXPECT_TRUE(isOverlayShown());
    EXPECT_FALSE(isShownBeside(true));
    EXPECT_TRUE(isShownBeside(false));
    // The desktop's panel restarts, and the tray is gone for a moment.
    EXPECT_FALSE(isShownBeside(true));
    statusItemHost().setPresent(false);
    scheduler.advance(Seconds(0.5));
    EXPECT_FALSE(isShownBeside(true));
    EXPECT_TRUE(isShownBeside(false));
    // A newcomer who has turned the icon off is told to look for the capsule, too.
    statusItemHost().setPresent(true);
    settings.setShowMenuBarIcon(false);
    EXPECT_TRUE(isOverlayShown());
    statusItemHost().setPresent(false);
    connections.installHooks(claude);
    EXPECT_FALSE(isOverlayShown());
}

} // namespace
} // namespace morvane
