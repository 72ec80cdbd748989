#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <nlohmann/json.hpp>

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
         "PreToolUse/idle_prompt=toolUse Stop=turnEnd StopFailure=turnFailed "
         "Notification/permission_prompt=needsInput Notification/agent_needs_input=needsInput "
         "Notification/idle_prompt=idle Notification/agent_completed=idle Notification=none "
         "Notification/ToolPermission=none Notification/SessionStart=none stop=none"},
        {{claude, codex, qoder}, "PermissionRequest=permissionRequest"},
        {{codebuddy, factory}, "PermissionRequest=needsInput"},
        {{gemini, qwen},
         "AfterAgent=turnEnd Notification/ToolPermission=needsInput Notification=none "
         "Notification/idle_prompt=none Stop=none"},
        {{cursor}, "stop=turnEnd preToolUse/x=toolUse Notification/permission_prompt=none"},
        {{opencode},
         "permission.asked/x=needsInput session.idle=turnEnd session.error=turnFailed Stop=none"},
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

TEST(AgentAdapters, HookOnlyEventsThatMeanSomething) {
    for (const AgentAdapter *adapter : AgentRegistry::all()) {
        for (const QString &event : adapter->nativeEvents() + adapter->decisionEvents()) {
            EXPECT_TRUE(adapter->canonical(event, "permission_prompt") ||
                        adapter->canonical(event, "ToolPermission"))
                << event.toStdString();
        }
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
    // What Claude Code, Codex and the agents that took after Claude Code are told.
    const std::tuple<AgentDecision, json, json, json> cases[] = {
        {AgentDecision::allow(), yes, yes, yes},
        {AgentDecision::deny(), no, no, no},
        {AgentDecision::ask(), none, none, none},
        {session, yes, yes, yes},
        {answer, none, none, yes}};
    for (const auto &[decision, ofClaude, ofCodex, ofFork] : cases) {
        EXPECT_EQ(reply(claude, decision, ""), ofClaude);
        EXPECT_EQ(reply(codex, decision, "Bash"), ofCodex);
        EXPECT_EQ(reply(qoder, decision, "Bash"), ofFork);
        EXPECT_EQ(reply(gemini, decision, "Bash"), none);
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

    // What a JSON reader can't represent exactly is passed on byte for byte.
    const QByteArray exact = R"("n" :[1e400, 12345678901234567890123,1.0,-0 ,1E5],"":"}\"]",)"
                             R"("cut":"\ud83d","e":{} , "t":true)";
    const auto bytes = AgentRegistry::adapter(claude).encodeDecision(
        answer, "Ask", "\xEF\xBB\xBF {\"x\":\"{\", \"tool_input\" : {" + exact + "}\n}", "P");
    ASSERT_TRUE(bytes);
    for (const char *part : {"[1e400, 12345678901234567890123,1.0,-0 ,1E5]", R"("":"}\"]")",
                             R"("cut":"\ud83d")", R"("e":{},)", R"("t":true,)"}) {
        EXPECT_TRUE(bytes->contains(part)) << bytes->constData();
    }

    for (const char *payload :
         {"", "[]", "{}", R"({"tool_input":"x"})", "{\"tool_input\":{\"x\":\"\xff\"}}"}) {
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
    for (const char *name : {".DS_Store", "Icon\r", ".gitkeep", "folder/file"}) {
        home.write(".claude/" + QString(name));
    }
    home.write(".config/opencode/plugins/morvane.js");
    QFile::link(home.write("elsewhere"), home.path(".claude/link"));
    EXPECT_EQ(present(), "");

    home.write(".claude/.hidden");
    home.write(".codebuddy/history");
    home.write(".config/opencode/opencode.json");
    EXPECT_EQ(present(), "Claude Code OpenCode CodeBuddy ");
}

} // namespace
} // namespace morvane
