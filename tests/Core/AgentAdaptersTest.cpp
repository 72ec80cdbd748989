#include "Core/AgentAdapter.h"
#include "Core/AgentRegistry.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <tuple>

namespace morvane {
namespace {

using enum AgentKind;
using nlohmann::json;
using Text = std::optional<QString>;

QString nameOf(std::optional<CanonicalEvent> event) {
    constexpr std::array names{"sessionStart", "promptSubmit",     "toolUse",    "needsInput",
                               "idle",         "turnEnd",          "turnFailed", "subagentStop",
                               "sessionEnd",   "permissionRequest"};
    return event ? names[static_cast<std::size_t>(*event)] : "none";
}

TEST(AgentAdapters, TranslateTheEventsOfEveryAgent) {
    // Each entry is a native name, perhaps with a notification type, and what it means.
    const std::pair<QList<AgentKind>, QString> dialects[] = {
        {{claude, codex, kimi, qoder, codebuddy, factory},
         "SessionStart=sessionStart UserPromptSubmit=promptSubmit PreToolUse/idle_prompt=toolUse "
         "Stop=turnEnd StopFailure=turnFailed SubagentStop=subagentStop SessionEnd=sessionEnd "
         "Notification/permission_prompt=needsInput Notification/agent_needs_input=needsInput "
         "Notification/idle_prompt=idle Notification/agent_completed=idle Notification=none "
         "Notification/=none Notification/ToolPermission=none Notification/SessionStart=none "
         "permission_prompt/permission_prompt=none BeforeTool=none stop=none"},
        {{claude, codex, qoder}, "PermissionRequest=permissionRequest"},
        {{codebuddy, factory}, "PermissionRequest=needsInput"},
        {{gemini, qwen},
         "SessionStart=sessionStart BeforeAgent=promptSubmit BeforeTool=toolUse AfterAgent=turnEnd "
         "SessionEnd=sessionEnd Notification/ToolPermission=needsInput Notification=none "
         "Notification/idle_prompt=none Stop=none"},
        {{cursor},
         "sessionStart=sessionStart beforeSubmitPrompt=promptSubmit preToolUse/x=toolUse "
         "stop=turnEnd subagentStop=subagentStop sessionEnd=sessionEnd Stop=none "
         "Notification/permission_prompt=none"},
        {{opencode},
         "session.created=sessionStart prompt.submit=promptSubmit tool.execute.before=toolUse "
         "permission.asked/x=needsInput session.idle=turnEnd session.deleted=sessionEnd Stop=none"},
        {{gemini, qwen, cursor, opencode, kimi}, "PermissionRequest=none"}};
    for (const auto &[agents, entries] : dialects) {
        for (const QString &entry : entries.split(' ')) {
            const QString native = entry.section('=', 0, 0);
            const Text type = native.contains('/') ? Text(native.section('/', 1)) : std::nullopt;
            for (const AgentKind kind : agents) {
                const auto event =
                    AgentRegistry::adapter(kind).canonical(native.section('/', 0, 0), type);
                EXPECT_EQ(nameOf(event), entry.section('=', 1))
                    << rawValue(kind) << ' ' << entry.toStdString();
            }
        }
    }
}

TEST(AgentAdapters, TellWhatEachAgentCanDo) {
    struct Case {
        AgentKind kind;
        bool decides;
        QString where;
    };
    const Case cases[] = {{claude, true, "~/.claude/settings.json"},
                          {codex, true, "~/.codex/hooks.json"},
                          {gemini, false, "~/.gemini/settings.json"},
                          {opencode, false, "~/.config/opencode/plugins/morvane.js"},
                          {cursor, false, "~/.cursor/hooks.json"},
                          {kimi, false, "~/.kimi/config.toml"},
                          {qwen, false, "~/.qwen/settings.json"},
                          {qoder, true, "~/.qoder/settings.json"},
                          {codebuddy, false, "~/.codebuddy/settings.json"},
                          {factory, false, "~/.factory/settings.json"}};
    const TemporaryHome home;
    auto shown = AgentRegistry::all().begin();
    for (const Case &expected : cases) {
        SCOPED_TRACE(rawValue(expected.kind));
        const AgentAdapter &adapter = **shown++;
        const bool isClaude = expected.kind == claude;
        EXPECT_EQ(adapter.kind(), expected.kind);
        EXPECT_EQ(&adapter, &AgentRegistry::adapter(expected.kind));
        EXPECT_EQ(adapter.supportsDecisions(), expected.decides);
        EXPECT_EQ(adapter.decisionEvents().join(' '), expected.decides ? "PermissionRequest" : "");
        // Every event that is hooked must mean something.
        for (const QString &event : adapter.nativeEvents() + adapter.decisionEvents()) {
            const auto types = {"permission_prompt", "ToolPermission"};
            EXPECT_TRUE(std::ranges::any_of(types, [&](const char *type) {
                return adapter.canonical(event, QString(type)).has_value();
            })) << event.toStdString();
        }
        EXPECT_EQ(adapter.reportsBackgroundTasks(), isClaude);
        EXPECT_EQ(adapter.supportsRememberedDecisions(), isClaude);
        EXPECT_EQ(adapter.supportsQuestionAnswers(), isClaude);
        EXPECT_EQ(adapter.notificationMute().has_value(), isClaude);
        EXPECT_EQ(adapter.statusLineFeed().has_value(), isClaude);
        EXPECT_EQ(adapter.integrationDescription(), expected.where);
        EXPECT_TRUE(adapter.isInstallable() && adapter.isVerified());
        const json rootKeys = expected.kind == cursor ? json{{"version", 1}} : json::object();
        EXPECT_EQ(adapter.extraRootKeys(), rootKeys);
    }
    EXPECT_EQ(shown, AgentRegistry::all().end());
}

TEST(AgentAdapters, AreFoundByTheirExactRawValue) {
    for (const AgentKind kind : allAgentKinds) {
        EXPECT_EQ(agentKind(rawValue(kind)), kind);
    }
    for (const char *other : {"Claude", "", "claude ", "claude\n", "unknown"}) {
        EXPECT_EQ(agentKind(other), std::nullopt) << other;
    }
    EXPECT_EQ(displayName(factory), "Factory");
    EXPECT_EQ(displayName(codebuddy), "CodeBuddy");
}

TEST(AgentAdapters, MatchAllToolsInTheAgentsOwnPatternLanguage) {
    const std::tuple<AgentKind, QString, Text> cases[] = {
        {claude, "PreToolUse", "*"},  {claude, "PermissionRequest", {}},
        {codex, "PreToolUse", "*"},   {codex, "PermissionRequest", {}},
        {qoder, "PreToolUse", "*"},   {qoder, "PermissionRequest", "*"},
        {factory, "PreToolUse", "*"}, {codebuddy, "PermissionRequest", {}},
        {gemini, "BeforeTool", ".*"}, {gemini, "BeforeAgent", {}},
        {kimi, "PreToolUse", ".*"},   {kimi, "Stop", {}},
        {cursor, "preToolUse", {}},   {opencode, "tool.execute.before", {}}};
    for (const auto &[kind, event, matcher] : cases) {
        EXPECT_EQ(AgentRegistry::adapter(kind).matcher(event), matcher) << rawValue(kind);
    }
}

TEST(AgentAdapters, WriteHookEntriesOfTwoShapes) {
    const AgentAdapter &most = AgentRegistry::adapter(qwen);
    EXPECT_EQ(most.hookEntry("run é", "*", false), json::parse(R"({"matcher":"*","hooks":[
                  {"type":"command","command":"run é","async":true,"timeout":5}]})"));
    EXPECT_EQ(most.hookEntry("run", {}, true),
              json::parse(R"({"hooks":[{"type":"command","command":"run","timeout":120}]})"));
    const AgentAdapter &flat = AgentRegistry::adapter(cursor);
    for (const bool blocking : {false, true}) {
        EXPECT_EQ(flat.hookEntry("run", {}, blocking),
                  json::parse(R"({"type":"command","command":"run","timeout":5})"));
        EXPECT_EQ(flat.hookEntry("run", "x", blocking),
                  json::parse(R"({"type":"command","command":"run","timeout":5,"matcher":"x"})"));
    }
}

/// The decision object of the reply, or null when the agent gets none.
json reply(AgentKind kind, const AgentDecision &decision, const Text &tool = {},
           const QByteArray &payload = {}) {
    const auto bytes =
        AgentRegistry::adapter(kind).encodeDecision(decision, tool, payload, "Permission\"é");
    if (!bytes) {
        return nullptr;
    }
    const json envelope = json::parse(bytes->begin(), bytes->end(), nullptr, false);
    EXPECT_EQ(envelope.value("/hookSpecificOutput/hookEventName"_json_pointer, ""),
              "Permission\"é");
    EXPECT_EQ(envelope.size(), 1);
    EXPECT_EQ(envelope["hookSpecificOutput"].size(), 2);
    return envelope["hookSpecificOutput"]["decision"];
}

TEST(Decisions, AreEncodedAsEachAgentTakesThem) {
    using Scope = AgentDecision::Scope;
    const json yes{{"behavior", "allow"}};
    const json no{{"behavior", "deny"}};
    const json none;
    const auto session = AgentDecision::allowRemembering(Scope::session);
    const auto answer = AgentDecision::answer({{"Q", "A"}});
    struct Case {
        AgentDecision decision;
        json ofClaude, ofCodex, ofFork;
    };
    const Case cases[] = {
        {AgentDecision::allow(), yes, yes, yes},
        {AgentDecision::deny(), no, no, no},
        {AgentDecision::ask(), none, none, none},
        {session, yes, yes, yes},
        {AgentDecision::allowRemembering(Scope::permanent), yes, yes, yes},
        {answer, none, none, yes},
    };
    for (const Case &expected : cases) {
        EXPECT_EQ(reply(claude, expected.decision), expected.ofClaude);
        EXPECT_EQ(reply(claude, expected.decision, ""), expected.ofClaude);
        EXPECT_EQ(reply(codex, expected.decision, "Bash"), expected.ofCodex);
        for (const AgentKind fork : {qoder, codebuddy, factory}) {
            EXPECT_EQ(reply(fork, expected.decision, "Bash"), expected.ofFork);
        }
        for (const AgentKind silent : {gemini, opencode, cursor, kimi, qwen}) {
            EXPECT_EQ(reply(silent, expected.decision, "Bash"), none);
        }
    }
    EXPECT_EQ(reply(claude, session, "Ba\"sh"),
              json::parse(R"({"behavior":"allow","updatedPermissions":
                  {"rule":"Ba\"sh","action":"allow","remembering":"session"}})"));
    EXPECT_EQ(reply(claude, AgentDecision::allowRemembering(Scope::permanent), "Bash"),
              json::parse(R"({"behavior":"allow","updatedPermissions":
                  {"rule":"Bash","action":"allow","remembering":"permanent"}})"));
    EXPECT_EQ(reply(claude, AgentDecision::allow(), "Bash"), yes);
}

TEST(Decisions, GiveClaudeItsInputBackWithTheAnswersInIt) {
    const auto answer = AgentDecision::answer({{"Which \"é\"?", "A"}, {"And?", "B"}});
    const QByteArray input = R"({"questions":[{"question":"Which?","n":18446744073709551615,
        "m":-9223372036854775808,"f":0.1,"deep":[[[{"x":null}]]]}],"answers":"stale","u":"\u0000"})";
    json expected = json::parse(input.toStdString());
    expected["answers"] = {{"Which \"é\"?", "A"}, {"And?", "B"}};
    const json decision = reply(claude, answer, "Ask", R"({"x":1,"tool_input":)" + input + "}");
    EXPECT_EQ(decision, (json{{"behavior", "allow"}, {"updatedInput", expected}}));

    for (const char *payload :
         {"", "{", "[]", "5", "{}", R"({"tool_input":"x"})", R"({"tool_input":[]})",
          "{\"tool_input\":{\"x\":\"\xff\"}}", R"({"tool_input":{"x":"\ud800"}})"}) {
        EXPECT_EQ(reply(claude, answer, "Ask", payload), nullptr) << payload;
    }
}

TEST(AgentPresence, NeedsAFileThatSomebodyMeantToBeThere) {
    const TemporaryHome home;
    const auto present = [] {
        QString result;
        for (const AgentAdapter *adapter : AgentRegistry::present()) {
            result += displayName(adapter->kind()) + ' ';
        }
        return result;
    };
    EXPECT_EQ(present(), "");
    EXPECT_FALSE(AgentRegistry::hasRun(home.path("nowhere")));
    for (const char *name :
         {".DS_Store", ".localized", "Icon\r", "desktop.ini", ".gitkeep", ".keep", "folder/file"}) {
        home.write(".claude/" + QString(name));
    }
    home.write(".config/opencode/plugins/morvane.js");
    QFile::link(home.write("elsewhere"), home.path(".claude/link"));
    EXPECT_EQ(present(), "");

    home.write(".claude/.hidden");
    home.write(".factory/settings.json");
    home.write(".codebuddy/history");
    home.write(".config/opencode/opencode.json");
    EXPECT_EQ(present(), "Claude Code OpenCode CodeBuddy Factory ");
}

} // namespace
} // namespace morvane
