#include "Core/Intake/HookEvent.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Support/EventBuilder.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

using Text = std::optional<QString>;

std::optional<HookEvent> decode(const QByteArray &body, const QString &native = "PreToolUse",
                                AgentKind agent = AgentKind::claude) {
    return HookEvent::decode(AgentRegistry::adapter(agent), native, body, {});
}

/// The event of a payload that has these members besides its session id.
HookEvent withMembers(const QByteArray &members, const QString &native = "PreToolUse",
                      AgentKind agent = AgentKind::claude) {
    const auto event = decode("{\"session_id\":\"s\"," + members + "}", native, agent);
    EXPECT_TRUE(event) << members.constData();
    return event.value_or(HookEvent());
}

HookEvent withInput(const QByteArray &members) {
    return withMembers("\"tool_input\":{" + members + "}");
}

TEST(HookEvent, IsReadAsTheReleaseMeansIt) {
    const AgentAdapter &qwen = AgentRegistry::adapter(AgentKind::qwen, AgentRelease{0, 24, 4});
    const auto prompt = [&](const QByteArray &text) {
        return HookEvent::decode(qwen, "UserPromptSubmit",
                                 R"({"session_id":"s","prompt":")" + text + "\"}", {});
    };
    EXPECT_FALSE(prompt(""));
    ASSERT_TRUE(prompt("Go"));
    EXPECT_TRUE(decode(R"({"session_id":"s","prompt":""})", "UserPromptSubmit"));

    const QByteArray spawn =
        R"({"session_id":"s","tool_name":"spawn_agent","tool_input":{"message":"Look around"}})";
    const AgentAdapter &codex = AgentRegistry::adapter(AgentKind::codex, AgentRelease{0, 169, 0});
    const auto launch = HookEvent::decode(codex, "PreToolUse", spawn, {});
    EXPECT_TRUE(launch && launch->launchesSubagent);
    EXPECT_EQ(launch->taskDescription, "Look around");
    EXPECT_FALSE(decode(spawn, "PreToolUse", AgentKind::codex)->launchesSubagent);
    const QByteArray task =
        R"({"session_id":"s","tool_name":"Task","tool_input":{"description":"Look around"}})";
    EXPECT_TRUE(decode(task, "PreToolUse")->launchesSubagent);
    EXPECT_EQ(decode(task, "PreToolUse")->taskDescription, "Look around");
    EXPECT_FALSE(decode(QByteArray(task).replace("Task", "task"), "PreToolUse")->launchesSubagent);

    const auto call = [&codex](const QByteArray &tool, const QByteArray &input) {
        const QByteArray body = R"({"session_id":"s","tool_name":")" + tool + R"(","tool_input":)";
        return HookEvent::decode(codex, "PreToolUse", body + input + "}", {})->callDigest;
    };
    EXPECT_NE(call("Bash", "\"ls\""), call("Bash", "\"make\""));
    EXPECT_NE(call("Bash", "\"ls\""), call("Run", "\"ls\""));
}

TEST(HookEvent, TakesTheLastWordsByTheNameThatTheAgentHasForThem) {
    const auto words = [](AgentKind agent, const char *event, const QByteArray &members) {
        const auto decoded = HookEvent::decode(*AgentRegistry::forms(agent).back(), event,
                                               R"({"session_id":"s",)" + members + "}", {});
        return decoded ? decoded->lastWords : "no event";
    };
    const QByteArray said = R"("last_assistant_message":"Done.")";
    EXPECT_EQ(words(AgentKind::codex, "Stop", said), "Done.");
    EXPECT_EQ(words(AgentKind::codex, "Stop", R"("last_assistant_message":null)"), std::nullopt);
    EXPECT_EQ(words(AgentKind::opencode, "session.idle", said), "Done.");
    EXPECT_EQ(words(AgentKind::opencode, "session.error", R"("error":"Refused")"), "Refused");
    EXPECT_EQ(words(AgentKind::gemini, "AfterAgent", R"("prompt_response":"Done.")"), "Done.");
    // Gemini CLI writes this where there is no response.
    EXPECT_EQ(words(AgentKind::gemini, "AfterAgent", R"("prompt_response":"[no response text]")"),
              "");
    EXPECT_EQ(decode(R"({"session_id":"s",)" + said + "}", "Stop", AgentKind::codex)->lastWords,
              std::nullopt);
}

TEST(HookEvent, TakesEverythingThatAPayloadTells) {
    const auto event = decode(
        R"({"session_id": "abc", "cwd": " /home/ada ", "tool_name": "Bash", "tool_use_id": "t1",
            "transcript_path": "/t.jsonl", "agent_id": "a1", "prompt": " do\nit ",
            "message": "May I?", "unknown": [1, {"x": null}],
            "tool_input": {"command": " ls -l\n", "description": "List", "timeout": 5}})",
        "PermissionRequest");
    ASSERT_TRUE(event);
    HookEvent expected =
        EventBuilder(CanonicalEvent::permissionRequest).in("abc").at(" /home/ada ").tool("Bash");
    expected.nativeName = "PermissionRequest";
    expected.toolUseID = "t1";
    expected.toolDetail = "ls -l";
    expected.responseMessage = "May I?";
    expected.taskDescription = "List";
    expected.prompt = "do it";
    expected.transcriptPath = "/t.jsonl";
    expected.agentID = "a1";
    expected.toolInput =
        ReadableInput::of(R"({"command": " ls -l\n", "description": "List", "timeout": 5})");
    EXPECT_TRUE(*event == expected);
}

TEST(HookEvent, LeavesOutAPlaceThatIsNotTheSessionsOwn) {
    HookOrigin origin;
    origin.termProgram = "kitty";
    origin.pane.tmux = "%1";
    const auto decodeOf = [&](const AgentAdapter &adapter) {
        return HookEvent::decode(adapter, "Stop", R"({"session_id":"s"})", origin).value();
    };
    const AgentAdapter &codex = *AgentRegistry::forms(AgentKind::codex).back();
    EXPECT_FALSE(decodeOf(codex).termProgram || decodeOf(codex).pane.tmux);
    EXPECT_TRUE(decodeOf(AgentRegistry::adapter(AgentKind::codex)).termProgram);
    origin.ttyName = "/dev/pts/1";
    EXPECT_TRUE(decodeOf(codex).termProgram && decodeOf(codex).pane.tmux);
}

TEST(HookEvent, KeepsWhatAQuestionIsAskedBeside) {
    const auto input = [](const QByteArray &members) {
        return withMembers("\"tool_name\":\"x\",\"tool_input\":" + members, "PermissionRequest")
            .toolInput;
    };
    const QByteArray question = R"("questions":[{"question":"Go on?","options":[{"label":"No"}]}])";
    EXPECT_TRUE(input("{" + question + ",\"answers\":{}}").lines.isEmpty());
    const auto more = input("{\"path\":\"~/.ssh\"," + question + "}").lines;
    ASSERT_EQ(more.size(), 1);
    EXPECT_EQ(more.first().text, "\"path\": \"~/.ssh\"");
    EXPECT_EQ(input("\"rm -rf ~\"").lines.first().text, "rm -rf ~");
    EXPECT_TRUE(input("null").lines.isEmpty());
}

TEST(HookEvent, DropsWhatNoSessionCouldUse) {
    const QByteArray bodies =
        R"(|   |[]|5|null|{|{}|not JSON|{"session_id":"s"} trailing|{"session_id":"s",}|)"
        "{\"session_id\":\"s\",\"x\":\"\xff\"}|"
        R"({"session_id":""}|{"session_id":7}|{"Session_ID":"s"})";
    for (const QByteArray &body : bodies.split('|')) {
        EXPECT_FALSE(decode(body)) << body.constData();
    }
    EXPECT_FALSE(decode(QByteArray("{\"session_id\":\"s\"}\0", 19)));
    for (const char *value : {"01", "1.", "1e", "-", "1e400-1", "+1e400", "\"\n\""}) {
        EXPECT_FALSE(decode(R"({"session_id":"s","x":)" + QByteArray(value) + "}")) << value;
    }
    EXPECT_FALSE(decode(R"({"session_id":"s"})", "PostToolUse"));
    EXPECT_FALSE(
        decode(R"({"session_id":"s","notification_type":["idle_prompt"]})", "Notification"));
}

TEST(HookEvent, TakesWhatJavaScriptWrites) {
    const std::pair<QByteArray, QString> cases[] = {
        {R"(cut \ud83d)", QStringLiteral(u"cut \ufffd")},
        {R"(\ude00\ud83dx\ud83d\ud83d\ude00)", QStringLiteral(u"\ufffd\ufffdx\ufffd\U0001F600")},
        {R"(\\ud83d \"\ud83d\u0041)", QStringLiteral(u"\\ud83d \"\ufffd"
                                                     "A")},
    };
    for (const auto &[spelled, message] : cases) {
        const auto event =
            decode("\xEF\xBB\xBF{\"session_id\":\"s\",\"message\":\"" + spelled + "\"}");
        ASSERT_TRUE(event) << spelled.constData();
        EXPECT_EQ(event->responseMessage, message);
    }
    EXPECT_FALSE(decode(R"({"session_id":"\ud83"})"));
}

TEST(HookEvent, CountsAValueOfTheWrongTypeAsMissing) {
    const HookEvent event = withMembers(
        R"("cwd":1,"tool_name":true,"Tool_Name":"Bash","tool_use_id":{},"transcript_path":[],
           "agent_id":null,"prompt":2.5,"background_tasks":{"type":"subagent"},
           "tool_input":"{\"command\":\"ls\",\"description\":\"x\"}")");
    HookEvent expected = EventBuilder(CanonicalEvent::toolUse);
    expected.nativeName = "PreToolUse";
    EXPECT_TRUE(event == expected);
}

TEST(HookEvent, ShowsTheFirstDetailOfTheTool) {
    const QByteArray all = R"("query":"q","url":"u","pattern":"n","path":"p","file_path":"f")";
    const std::pair<QByteArray, Text> cases[] = {
        {all + R"(,"command":"c")", "c"},
        {all + R"(,"command":"")", "f"},
        {R"("query":"q","url":"u","pattern":"n","path":"p","file_path":7)", "p"},
        {R"("query":"q")", "q"}};
    for (const auto &[input, detail] : cases) {
        EXPECT_EQ(withInput(input).toolDetail, detail) << input.constData();
    }
}

TEST(HookEvent, TakesTheFirstMessageThereIs) {
    const std::pair<QByteArray, Text> cases[] = {
        {R"("tool_input":{"prompt":"p","question":"q"},"reason":"r","message":"m")", "m"},
        {R"("tool_input":{"prompt":"p","question":"q"},"reason":"r","message":5)", "r"},
        {R"("tool_input":{"prompt":"p","question":"q"},"message":null)", "q"},
        {R"("tool_input":{"prompt":"p"})", "p"},
        {R"("reason":"r","message":"")", {}}};
    for (const auto &[members, message] : cases) {
        EXPECT_EQ(withMembers(members).responseMessage, message) << members.constData();
    }
}

TEST(HookEvent, ReadsQuestionsWithTheirOptions) {
    const HookEvent event = withInput(R"("questions":[
        {"question":" Which?\n","header":" H ","multiSelect":true,"options":[
            {"label":" A ","description":" first "},{"label":"B","description":"  "},
            {"label":""},{"label":3},{"description":"no label"},{"label":"C","description":4}]},
        {"question":"And?","header":5,"multiSelect":1,"options":[{"label":"Yes"}]}])");
    const QList<AgentQuestion> expected{
        {"Which?", " H ", {{" A ", "first"}, {"B", {}}, {"C", {}}}, true, false},
        {"And?", {}, {{"Yes", {}}}, false, false}};
    ASSERT_TRUE(event.questions);
    EXPECT_TRUE(*event.questions == expected);
}

TEST(HookEvent, TellsWhetherAQuestionHasMoreInIt) {
    const auto isWhole = [](const QByteArray &members, const QByteArray &option) {
        return withInput(R"("questions":[{"question":"Q",)" + members +
                         R"("options":[{"label":"A"},)" + option + "]}]")
            .questions->first()
            .isWhole;
    };
    const QByteArray plain = R"({"label":"B"})";
    const QByteArray usual = R"("header":"H","multiSelect":false,)";
    EXPECT_TRUE(isWhole({}, plain));
    EXPECT_TRUE(isWhole(usual, R"({"label":"B","description":" "})"));
    for (const char *option :
         {R"({"label":"B","preview":"+--+"})", R"({"label":"B","description":{"run":"rm"}})",
          R"({"label":"B","label":"C"})", R"({"label":"","run":"rm"})", "{}"}) {
        EXPECT_FALSE(isWhole(usual, option)) << option;
    }
    for (const char *members : {R"("run":"rm",)", R"("header":{"run":"rm"},)",
                                R"("multiSelect":"rm",)", R"("header":"H","question":"rm?",)"}) {
        EXPECT_FALSE(isWhole(members, plain)) << members;
    }
}

TEST(HookEvent, OffersAllQuestionsOrNone) {
    const QByteArray good = R"({"question":"Q","options":[{"label":"A"}]})";
    const QByteArray flaws =
        R"(5|{"question":7,"options":[{"label":"A"}]}|{"question":" \n","options":[{"label":"A"}]}|)"
        R"({"question":"Q"}|{"question":"Q","options":{"label":"A"}}|)"
        R"({"question":"Q","options":[{"label":""}]}|)"
        R"({"question":"Q","options":[{"label":"A"},"B"]})";
    EXPECT_EQ(withInput("\"questions\":[" + good + "]").questions->size(), 1);
    for (const QByteArray &flaw : flaws.split('|')) {
        for (const QByteArray &list : {flaw, good + "," + flaw, flaw + "," + good}) {
            const HookEvent event = withInput("\"questions\":[" + list + "]");
            EXPECT_FALSE(event.questions) << list.constData();
        }
    }
    EXPECT_FALSE(withInput(R"("questions":[])").questions);
}

TEST(HookEvent, ListsBackgroundTasksOfAgentsThatReportThem) {
    const QByteArray members = R"("background_tasks":[
        {"type":"shell","description":"make"},{"description":"no type"},{"type":1},
        {"type":"subagent","description":" a\nb "},{"type":"workflow","description":"<x>"},
        {"type":"Subagent","description":5}])";
    const HookEvent event = withMembers(members, "Stop");
    const QList<BackgroundTask> expected{
        {"shell", "make"}, {"subagent", "a b"}, {"workflow", {}}, {"Subagent", {}}};
    EXPECT_TRUE(event.backgroundTasks == expected);
    EXPECT_TRUE(event.pendingAgents() == expected.mid(1, 2));

    EXPECT_TRUE(withMembers(members, "Stop", AgentKind::codex).backgroundTasks.isEmpty());
    EXPECT_TRUE(withMembers(R"("background_tasks":[{"type":"subagent"},5])", "Stop")
                    .backgroundTasks.isEmpty());
}

TEST(HookEvent, KnowsWhereCursorKeepsItsSessionAndFolder) {
    const std::tuple<QByteArray, QString, Text> cases[] = {
        {R"("conversation_id":"c","cwd":"/a","workspace_roots":["/b"])", "c", "/a"},
        {R"("conversation_id":5,"cwd":"","workspace_roots":["/b","/c"])", "s", "/b"},
        {R"("cwd":"","workspace_roots":[])", "s", {}}};
    for (const auto &[members, sessionID, cwd] : cases) {
        const HookEvent event = withMembers(members, "stop", AgentKind::cursor);
        EXPECT_EQ(event.sessionID, sessionID) << members.constData();
        EXPECT_EQ(event.cwd, cwd) << members.constData();
    }
    EXPECT_FALSE(decode(R"({"conversation_id":"","session_id":"s"})", "stop", AgentKind::cursor));
}

TEST(HookEvent, LivesWithNumbersDepthsAndCharactersOfAnySize) {
    for (const QByteArray number :
         {"18446744073709551616", "-9223372036854775809", "-1E+400", "1234567890.5e-3", "-0"}) {
        const HookEvent event =
            withMembers("\"n\":[" + number + "],\"tool_input\":{\"a\":" + number +
                        R"(,"command":"seq 1e400 \"-2\" \\","b":)" + number + "}");
        EXPECT_EQ(event.toolDetail, R"(seq 1e400 "-2" \)") << number.constData();
    }
    const QByteArray deep(1'000'000, '[');
    decode("{\"session_id\":\"s\",\"x\":" + deep + QByteArray(deep.size(), ']') + "}");
    decode("{\"session_id\":\"s\",\"n\":1e400,\"x\":" + deep);
    EXPECT_EQ(withMembers(R"("prompt":"a\u0000b")").prompt, QString::fromLatin1("a\0b", 3));
    decode(R"({"session_id":"\ud800","prompt":"\udc00\ud800"})");
}

} // namespace
} // namespace morvane
