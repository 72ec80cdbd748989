#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Hooks/InstallerFixture.h"

namespace morvane {
namespace {

using enum AgentKind;
using nlohmann::json;
using HookInstallerTest = InstallerFixture;

TEST_F(HookInstallerTest, WritesTheEntriesOfEachJsonAgent) {
    write(claude,
          R"({"hooks":{"Stop":[{"command":"a"},{"command":".morvane/hook.sh"},{"command":"b"}]}})");
    connect(claude);
    const json ours = root(claude);
    EXPECT_EQ(ours["hooks"]["PreToolUse"], value(R"([{"matcher":"*","hooks":[{"type":"command",
        "command":"OURS/hook.sh claude PreToolUse","async":true,"timeout":5}]}])"));
    EXPECT_EQ(ours["hooks"]["PermissionRequest"], value(R"([{"hooks":[{"type":"command",
        "command":"OURS/hook.sh claude PermissionRequest decide","timeout":120}]}])"));
    EXPECT_EQ(ours["hooks"]["Stop"], value(R"([{"command":"a"},{"command":"b"},{"hooks":[{
        "type":"command","command":"OURS/hook.sh claude Stop","async":true,"timeout":5}]}])"));
    EXPECT_EQ(ours["statusLine"], value(R"({"type":"command","command":"OURS/statusline.sh"})"));

    for (const AgentKind kind : {cursor, gemini, qoder, codebuddy}) {
        connect(kind);
    }
    EXPECT_EQ(root(cursor)["version"], 1);
    EXPECT_EQ(root(cursor)["hooks"]["stop"],
              value(R"([{"type":"command","command":"OURS/hook.sh cursor stop","timeout":5}])"));
    EXPECT_EQ(root(gemini)["hooks"]["BeforeTool"][0]["matcher"], ".*");
    EXPECT_EQ(root(qoder)["hooks"]["PermissionRequest"][0]["matcher"], "*");
    EXPECT_FALSE(root(qoder)["hooks"]["Stop"][0].contains("matcher"));
    EXPECT_EQ(root(codebuddy)["hooks"]["PermissionRequest"][0]["hooks"][0]["command"],
              value(R"("OURS/hook.sh codebuddy PermissionRequest")"));
}

TEST_F(HookInstallerTest, ComesAndGoesWithoutALossOfAnything) {
    // A person's settings file, and the part of it that is not ours; null stands for all of it.
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"model = opus", "{}"},
        {R"(["a"])", "{}"},
        {R"({"model":"opus","n":null,"t":true,"l":[[],{},[{"a":[]}]],"o":{"hooks":{"Stop":[]}}})",
         {}},
        {R"({"hooks":{"Stop":[{"hooks":[{"type":"command","command":"say done"}]}],)"
         R"("PreToolUse":[{"matcher":"Bash","hooks":[{"type":"command","command":"guard.sh"},)"
         R"({"type":"command","command":"log.sh","timeout":3}]}],"PreCompact":[{"command":"x"}]}})",
         {}},
        {R"({"hooks":{"Note":"text","Number":7,"Nothing":null,"Map":{"command":"x"},)"
         R"("Mixed":[1,{"command":"/.morvane/hook.sh a"},{"command":"x"}],"None":[]}})",
         R"({"hooks":{"Note":"text","Number":7,"Nothing":null,"Map":{"command":"x"},)"
         R"("Mixed":[1,{"command":"x"}],"None":[]}})"},
        {R"({"hooks":["a"],"model":"opus"})", R"({"model":"opus"})"},
        {R"({"hooks":{"Stop":[{"command":"/old/.morvane/hook.sh claude Stop"},{"command":"bell"}],)"
         R"("Gone":[{"hooks":[{"command":"~/.morvane/hook.sh claude Gone 1234"}]}]}})",
         R"({"hooks":{"Stop":[{"command":"bell"}]}})"},
        {R"({"hooks":{"Stop":[{"hooks":[{"command":"a"},{"command":"/.morvane/hook.sh"}]}]},"a":1})",
         R"({"a":1})"},
        {R"({"statusLine":{"type":"command","command":"~/line.sh"}})", {}},
        {R"({"version":3,"hooks":{}})", R"({"version":3})"},
    };
    for (const AgentKind kind : {claude, cursor}) {
        for (const auto &[before, left] : cases) {
            SCOPED_TRACE(std::string(rawValue(kind)) + ": " + before.toStdString());
            write(kind, before);
            connect(kind);
            EXPECT_TRUE(installer(kind)->isInstalled());
            EXPECT_FALSE(installer(kind)->hasStaleEntries());
            EXPECT_EQ(issues(kind), QStringList());
            EXPECT_EQ(backup(kind), before);
            const QByteArray installed = text(kind);
            connect(kind);
            EXPECT_EQ(text(kind), installed);
            // After a change by somebody else, disconnecting doesn't just restore the original.
            write(kind, installed + " ");
            disconnect(kind);
            EXPECT_FALSE(installer(kind)->isInstalled());
            EXPECT_EQ(backup(kind), installed + " ");
            // Anything that connecting had lost would be missing now.
            const auto theirs = LenientJson::parse(left.isNull() ? before : left);
            ASSERT_TRUE(theirs);
            json expected = *theirs;
            if (kind == cursor && !expected.contains("version")) {
                expected["version"] = 1; // which it needs at the root
            }
            EXPECT_EQ(root(kind), expected);
            connect(kind);
            EXPECT_EQ(text(kind), installed);
        }
    }
}

TEST_F(HookInstallerTest, LeavesAloneWhatItDoesNotUnderstandWhenItGoes) {
    disconnect(claude);
    EXPECT_FALSE(QFile::exists(home.path(place(claude))));
    for (const char *text : {"", "no JSON", R"({"hooks":[".morvane/hook.sh"]})", R"({"a":1})"}) {
        write(claude, text);
        disconnect(claude);
        EXPECT_EQ(failure(installer(claude)->setNotificationsSuppressed(false)), "");
        EXPECT_EQ(this->text(claude), text);
        EXPECT_EQ(backup(claude), QByteArray());
    }
}

TEST_F(HookInstallerTest, TouchesNoSettingsWithoutAScript) {
    home.write(".morvane", "in the way");
    write(claude, R"({"model":"opus"})");
    write(kimi, "model = 'k2'\n");
    for (const AgentKind kind : {claude, kimi}) {
        EXPECT_NE(failure(installer(kind)->install()), "");
    }
    EXPECT_EQ(text(claude), R"({"model":"opus"})");
    EXPECT_EQ(text(kimi), "model = 'k2'\n");
}

TEST_F(HookInstallerTest, FollowsTheSettingForApprovals) {
    for (const AgentKind kind : {claude, codex}) {
        settings.setApprovalsEnabled(true);
        connect(kind);
        settings.setApprovalsEnabled(false);
        EXPECT_TRUE(installer(kind)->hasStaleEntries());
        connect(kind);
    }
    EXPECT_FALSE(root(claude)["hooks"].contains("PermissionRequest"));
    EXPECT_EQ(root(codex)["hooks"]["PermissionRequest"][0]["hooks"][0], value(R"({"type":"command",
        "command":"OURS/hook.sh codex PermissionRequest","async":true,"timeout":5})"));
}

TEST_F(HookInstallerTest, SeesWhichEntriesAreStale) {
    connect(codex);
    const json current = root(codex);
    const auto isStale = [&](const std::function<void(json & hooks)> &damage) {
        json changed = current;
        damage(changed["hooks"]);
        write(codex, LenientJson::write(changed));
        return installer(codex)->hasStaleEntries();
    };
    EXPECT_TRUE(isStale([](json &hooks) { hooks.erase("Stop"); }));
    EXPECT_TRUE(isStale([](json &hooks) { hooks["New"] = hooks["Stop"]; }));
    EXPECT_TRUE(isStale([](json &hooks) { hooks["Stop"] = hooks["SessionEnd"]; }));
    EXPECT_TRUE(isStale([&](json &hooks) {
        hooks["Stop"].push_back({{"command", "/other/.morvane/hook.sh codex Stop"}});
    }));
    EXPECT_FALSE(isStale([](json &hooks) { hooks["Stop"].push_back({{"command", "other"}}); }));
}

TEST_F(HookInstallerTest, TakesTheFoldersAwayThatItHasMade) {
    for (const AgentKind kind : {claude, kimi}) {
        folder(kind).mkpath(".");
        QFile::link(home.path("dots/agents/settings"), home.path(place(kind)));
        connect(kind);
        EXPECT_TRUE(QFileInfo::exists(home.path("dots/agents/settings")));
        disconnect(kind);
        EXPECT_FALSE(QFileInfo::exists(home.path("dots")));
        folder(kind).removeRecursively();

        // A file that the person has moved since is theirs, and so is the folder around it.
        connect(kind);
        QDir().mkpath(home.path("dots"));
        QFile::rename(home.path(place(kind)), home.path("dots/settings"));
        QFile::link("../dots/settings", home.path(place(kind)));
        disconnect(kind);
        EXPECT_EQ(home.read("dots/settings"), kind == kimi ? "" : "{}\n");
        QDir(home.path("dots")).removeRecursively();
    }
}

TEST_F(HookInstallerTest, WritesAndRemovesThePlugin) {
    connect(opencode);
    EXPECT_TRUE(text(opencode).contains(settings.eventToken().toUtf8()));
    EXPECT_EQ(home.mode(place(opencode)), 0600U);
    EXPECT_EQ(installer(opencode)->health(), (Health{.hooksPresent = true}));
    EXPECT_FALSE(QFile::exists(ForwarderScripts::folder()));
    for (int times = 0; times < 2; ++times) {
        disconnect(opencode);
        EXPECT_FALSE(installer(opencode)->isInstalled());
    }
}

TEST_F(HookInstallerTest, TellsWhatHasBecomeOfAConnection) {
    const QString hook = home.path(".morvane/hook.sh");
    const QStringList unreadable{"settings file missing or unreadable"};
    const QStringList noScript{"forwarder script missing"};
    const QStringList outdated{"hook entries out of date"};
    for (const AgentKind kind : {claude, codex, cursor, kimi}) {
        SCOPED_TRACE(rawValue(kind));
        EXPECT_EQ(issues(kind), unreadable);
        write(kind, kind == kimi ? "a = 1\n" : R"({"a":1})");
        EXPECT_EQ(installer(kind)->health(), Health());
        connect(kind);
        EXPECT_EQ(issues(kind), QStringList());
        QFile::setPermissions(hook, QFile::ReadOwner);
        EXPECT_EQ(issues(kind), noScript);
        QFile::remove(hook);
        write(kind, text(kind).replace("/.morvane/hook.sh", "/old/.morvane/hook.sh"));
        EXPECT_EQ(issues(kind), noScript + outdated);
        installer(kind)->renew();
        EXPECT_EQ(issues(kind), QStringList());
        QFile::remove(home.path(place(kind)));
        EXPECT_EQ(issues(kind), unreadable);
    }
    write(claude, "no JSON with .morvane/hook.sh");
    EXPECT_EQ(installer(claude)->health(), (Health{.settingsReadable = false}));
}

TEST_F(HookInstallerTest, TakesTheStatusLineOnlyFromNobody) {
    const QString script = home.path(".morvane/statusline.sh");
    connect(claude);
    const json connected = root(claude);
    EXPECT_EQ(installer(claude)->health().statusLine, StatusLineHealth::connected);
    EXPECT_TRUE(QFileInfo(script).isExecutable());

    QFile::remove(script);
    EXPECT_EQ(issues(claude), QStringList{"statusline script missing"});
    EXPECT_FALSE(installer(claude)->hasStaleEntries());
    installer(claude)->renew();
    EXPECT_EQ(installer(claude)->health().statusLine, StatusLineHealth::connected);

    json changed = connected;
    changed["statusLine"]["command"] = "/old/.morvane/statusline.sh";
    json absent = connected;
    absent.erase("statusLine");
    for (const json &stale : {changed, absent}) {
        write(claude, LenientJson::write(stale));
        EXPECT_TRUE(installer(claude)->hasStaleEntries());
        installer(claude)->renew();
        EXPECT_EQ(root(claude), connected);
    }

    for (const json &other : {json{{"command", "mine"}}, json("mine"), json{{"command", 7}}, json(),
                              json(""), json::object()}) {
        changed["statusLine"] = other;
        write(claude, LenientJson::write(changed));
        EXPECT_EQ(installer(claude)->health().statusLine, StatusLineHealth::ownedByOther);
        EXPECT_EQ(issues(claude), QStringList());
        EXPECT_EQ(installer(claude)->hasStaleEntries(), other.empty() || other == "");
        connect(claude);
        disconnect(claude);
        EXPECT_EQ(root(claude)["statusLine"], other);
        EXPECT_FALSE(QFile::exists(script));
    }
    // Settings that are away for a moment may come back.
    connect(claude);
    QFile::remove(home.path(place(claude)));
    disconnect(claude);
    EXPECT_TRUE(QFile::exists(script));
}

TEST_F(HookInstallerTest, SeesThatAnAgentRunsNoHooks) {
    const std::tuple<AgentKind, const char *, bool> cases[] = {
        {claude, R"({"disableAllHooks":"true","hooksConfig":{"enabled":false}})", false},
        {qwen, R"({"disableAllHooks":true})", true},
        {qoder, R"({"disableAllHooks":true})", true},
        {qoder, R"({"hooksConfig":{"enabled":false}})", true},
        {codebuddy, R"({"disableAllHooks":true})", false},
        {factory, R"({"hooks":{"hooksDisabled":true}})", true},
    };
    for (const auto &[kind, before, isOff] : cases) {
        SCOPED_TRACE(before);
        write(kind, before);
        EXPECT_FALSE(installer(kind)->health().hooksSwitchedOff) << "nobody is connected";
        connect(kind);
        EXPECT_EQ(installer(kind)->health().hooksSwitchedOff, isOff);
        EXPECT_EQ(issues(kind), QStringList());
        disconnect(kind);
    }
}

} // namespace
} // namespace morvane
