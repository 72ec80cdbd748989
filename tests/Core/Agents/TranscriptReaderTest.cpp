#include "Core/Agents/TranscriptReader.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Adapters/ClaudeTranscript.h"
#include "Core/Adapters/CodexTranscript.h"
#include "Core/Agents/AgentAdapter.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

namespace morvane {
namespace {

TranscriptInfo claudeInfo(QByteArrayView lines) {
    return TranscriptReader::newestFirst(lines, ClaudeTranscript::takeLine);
}

TranscriptInfo codexInfo(QByteArrayView lines) {
    return TranscriptReader::newestFirst(lines, CodexTranscript::takeLine);
}

TranscriptInfo readClaude(const QString &path) {
    return TranscriptReader::readTail(path, ClaudeTranscript::takeLine);
}

using Text = std::optional<QString>;

constexpr qsizetype tailSize = 262'144;

QByteArray claudeContent(const QByteArray &content) {
    return R"({"type":"assistant","message":{"content":)" + content + "}}\n";
}

QByteArray claudeText(const QByteArray &text) {
    return claudeContent(R"([{"type":"text","text":")" + text + "\"}]");
}

QByteArray claudeModel(const QByteArray &model) {
    return R"({"type":"assistant","message":{"model":")" + model + "\"}}\n";
}

QByteArray claudeUsage(const QByteArray &usage) {
    return R"({"type":"assistant","message":{"usage":)" + usage + "}}\n";
}

QByteArray codexMessage(const QByteArray &fields, const QByteArray &content) {
    return R"({"type":"response_item","payload":{"type":"message",)" + fields + R"(,"content":)" +
           content + "}}\n";
}

TEST(TranscriptReader, TakesEachFieldFromTheNewestLineThatHasIt) {
    const std::pair<QByteArray, TranscriptInfo> cases[] = {
        {claudeUsage(R"({"input_tokens":50})") + claudeUsage(R"({"input_tokens":0})") +
             claudeUsage(R"({"input_tokens":-5})") + claudeUsage("{}") + claudeUsage("7"),
         {{}, {}, 50, {}, {}}},
        {claudeUsage(R"({"input_tokens":4,"cache_read_input_tokens":130000,)"
                     R"("cache_creation_input_tokens":7005,"output_tokens":200})"),
         {{}, {}, 137'009, {}, {}}},
        {claudeUsage(R"({"input_tokens":"3","cache_read_input_tokens":2.5,)"
                     R"("cache_creation_input_tokens":8})"),
         {{}, {}, 8, {}, {}}},
        {claudeUsage(R"({"input_tokens":2147483647,"cache_read_input_tokens":2147483647})"), {}},
        {claudeText("Kept.") + claudeText("<system>no</system>") + claudeText("{\\\"a\\\":1}") +
             claudeText(" \\n "),
         {{}, "Kept.", {}, {}, {}}},
        {claudeText("Older.") +
             claudeContent(R"([{"type":"text","text":"One."},{"type":"text","text":"<two>"},)"
                           R"({"type":"thinking","text":"Hm."}])"),
         {{}, "One.", {}, {}, {}}},
        {claudeText("Older.") + claudeContent(R"([{"type":"text","text":"Mixed."},"x"])") +
             claudeContent("\"x\"") + claudeContent(R"([{"type":"text","text":5}])"),
         {{}, "Older.", {}, {}, {}}},
        {claudeModel("claude-claude-haiku") + "{\"type\":\"assistant\",\"message\":{\"model\":7}}",
         {"haiku", {}, {}, {}, {}}},
        {claudeModel("gpt-5") + claudeModel("<synthetic>") +
             R"({"type":"user","message":{"model":"no"}})",
         {"gpt-5", {}, {}, {}, {}}},
        {R"({"type":"ai-title","aiTitle":" Ti\ntle "})"
         "\n"
         R"({"type":"ai-title","aiTitle":"<x"})",
         {{}, {}, {}, {}, "Ti tle"}},
        {claudeModel("claude-a") + "[]\n\n7\n{}\n{\"type\":5}\nnull\n{\"type\":\"assistant\"}\n" +
             R"({"type":"assistant","message":[]})" + "\r\n{\"type\":\"assistant\",\"mess",
         {"a", {}, {}, {}, {}}}};
    for (const auto &[lines, info] : cases) {
        EXPECT_EQ(claudeInfo(lines), info) << lines.constData();
    }
}

TEST(TranscriptReader, PassesOverWhatCodexDoesNotMeanForAPerson) {
    const QByteArray answer = codexMessage(R"("role":"assistant")", R"([{"text":"Older."}])");
    const std::pair<QByteArray, Text> answers[] = {
        {codexMessage(R"("role":"assistant","phase":"final_answer")", R"([{"text":"New."}])"),
         "New."},
        {codexMessage(R"("role":"system")", R"([{"text":"New."}])"), "Older."},
        {codexMessage(R"("role":"assistant")", R"([{"text":"New."},7])"), "Older."},
        {R"({"type":"response_item","payload":"x"})", "Older."}};
    for (const auto &[line, text] : answers) {
        EXPECT_EQ(codexInfo(answer + line).lastAssistantText, text) << line.constData();
    }
    const TemporaryHome home;
    const QByteArray aside =
        codexMessage(R"("role":"assistant","phase":"commentary")", R"([{"text":"New."}])");
    const QString path = home.write("t.jsonl", answer + aside);
    const AgentAdapter &listed = *AgentRegistry::forms(AgentKind::codex).back();
    EXPECT_EQ(listed.readTranscript(path).lastAssistantText, "New.");
    const AgentAdapter &base = AgentRegistry::adapter(AgentKind::codex);
    EXPECT_EQ(base.readTranscript(path).lastAssistantText, "Older.");
    const QByteArray prompt = codexMessage(R"("role":"user")", R"([{"text":"Older"}])");
    EXPECT_EQ(codexInfo(prompt + codexMessage(R"("role":"user")", R"([{"text":"<a>"}])")).title,
              "Older");
    EXPECT_EQ(codexInfo(R"({"type":"turn_context","payload":{"model":"a","approval_policy":"x"}}
{"type":"turn_context","payload":{"model":"b"}}
{"type":"session_meta","payload":{"model":"no"}})"),
              (TranscriptInfo{"b", {}, {}, "x", {}}));
    EXPECT_EQ(codexInfo(R"({"type":"event_msg","payload":{"type":"token_count","info":)"
                        R"({"last_token_usage":{"input_tokens":0}}}})"),
              TranscriptInfo());
}

TEST(TranscriptReader, MakesATextFitForOneLine) {
    const QString longest(120, 'x');
    const std::pair<Text, Text> cases[] = {{" \t\r\n ", {}},
                                           {" <system>", {}},
                                           {"\n{\"a\":1}", {}},
                                           {"a < b {c}", "a < b {c}"},
                                           {" one\ntwo\n\nthree\r\nfour\n", "one two  three four"},
                                           {longest + "x", longest + u'…'}};
    for (const auto &[text, line] : cases) {
        EXPECT_EQ(TranscriptReader::displayLine(text), line);
    }
    // A mark joins the blank that stands for a line feed.
    const QString joined = u'a' + QStringLiteral(" \u0301").repeated(119);
    EXPECT_EQ(TranscriptReader::displayLine(QString(joined).replace(' ', '\n')), joined);
}

/// Transcripts as files.
class TranscriptFileTest : public testing::Test {
protected:
    using Turn = TranscriptInfo::Turn;

    /// Reads the lines as this agent's transcript; all its releases must read the same.
    TranscriptInfo readBy(AgentKind agent, const QByteArrayList &lines) const {
        const QString path = home.write("t.jsonl", lines.join('\n'));
        const TranscriptInfo info = AgentRegistry::adapter(agent).readTranscript(path);
        for (const AgentAdapter *form : AgentRegistry::forms(agent)) {
            EXPECT_EQ(form->readTranscript(path), info);
            EXPECT_TRUE(form->transcriptTellsProgress() || !info.model);
        }
        return info;
    }

    TranscriptInfo read(const QByteArray &bytes) const {
        return readClaude(home.write("t.jsonl", bytes));
    }

    /// This many bytes of lines without information.
    static QByteArray padding(qsizetype size) {
        QByteArray result = QByteArray("{\"type\":\"summary\",\"text\":\"ä\"}\n");
        result = result.repeated(size / result.size());
        return result + QByteArray(size - result.size(), '\n');
    }

    TemporaryHome home;
};

TEST(TranscriptReader, KnowsATurnOfCodexThatHasFailed) {
    const auto after = [](const QByteArray &members) {
        return codexInfo(R"({"type":"event_msg","payload":{)" + members + "}}\n");
    };
    const std::pair<const char *, std::optional<QString>> cases[] = {
        {R"("type":"error","message":"No answer")", "No answer"},
        {R"("type":"task_complete","error":{"message":"Bad Request"})", "Bad Request"},
        {R"("type":"task_complete","error":{"message":"{\"error\":{\"message\":\"Too long\"}}"})",
         "Too long"},
        {R"("type":"task_complete","error":{"message":"{\"error\":7}"})", std::nullopt}};
    for (const auto &[members, failure] : cases) {
        EXPECT_EQ(after(members).turn, TranscriptInfo::Turn::failed) << members;
        EXPECT_EQ(after(members).failure, failure) << members;
    }
}

TEST_F(TranscriptFileTest, FindsAnInterruptionOfClaudeOnlyWhereClaudeHasNotedIt) {
    const auto turnAfter = [this](const QByteArray &content, const char *next = "") {
        const QByteArray line = R"({"type":"user","message":{"content":)" + content + "}}";
        return readBy(AgentKind::claude, {claudeText("Working."), line, next}).turn;
    };
    const QByteArray note = "\"[Request interrupted by user for tool use]\"";
    for (const char *next : {"", R"({"type":"user"})", R"({"type":"progress","message":{}})"}) {
        EXPECT_EQ(turnAfter(R"([{"type":"text","text":)" + note + "}]", next), Turn::interrupted);
    }
    EXPECT_EQ(turnAfter(note), Turn::running);
    EXPECT_EQ(turnAfter(R"([{"type":"tool_result","content":)" + note + "}]"), Turn::running);
}

TEST_F(TranscriptFileTest, KnowsWhatFactorySaysAndHowItsTurnStands) {
    const auto message = [](const QByteArray &role, const QByteArray &text) {
        return R"({"type":"message","message":{"role":")" + role +
               R"(,"content":[{"type":"text","text":")" + text + "\"}]}}";
    };
    const QByteArray said = message("assistant\"", "Done.");
    const QByteArray hook = R"({"type":"message","timestamp":"2026-01-01T20:13:54.917Z",)"
                            R"("message":{"role":"user","content":[],"visibility":"user_only"}})";
    const auto after = [&](const QByteArrayList &lines) {
        return readBy(AgentKind::factory, QByteArrayList{said, hook} + lines);
    };
    const auto outcome = [](const QByteArray &reason) {
        return R"({"type":"agent_turn_outcome","reason":")" + reason + "\"}";
    };
    EXPECT_EQ(after({}).lastAssistantText, "Done.");
    EXPECT_EQ(after({message("user\"", "Go on"), hook}).lastAssistantText, std::nullopt);
    EXPECT_EQ(after({outcome("completed")}).turn, Turn::ended);
    EXPECT_EQ(after({outcome("cancelled")}).turn, Turn::interrupted);
    EXPECT_EQ(after({outcome("completed"), message("user\"", "Go on")}).turn, Turn::running);
    const TranscriptInfo failed = after({message(R"(user","visibility":"user_only")", "Error: 400"),
                                         hook, outcome("model_request_rejected")});
    EXPECT_EQ(failed.turn, Turn::failed);
    EXPECT_EQ(failed.failure, "Error: 400");
    EXPECT_EQ(failed.turnAt, Date(std::chrono::milliseconds(1'767'298'434'917)));
}

TEST_F(TranscriptFileTest, KnowsHowATurnOfGeminisStands) {
    const auto after = [this](const QByteArrayList &lines) {
        const QByteArray typed = R"({"type":"user","content":[{"text":"Run it"}]})";
        return readBy(AgentKind::gemini, QByteArrayList{typed} + lines);
    };
    const QByteArray cancelled = R"({"type":"info","content":"Request cancelled."})";
    const QByteArray result = R"({"type":"user","content":[{"functionResponse":{}}]})";
    const QByteArray more = R"({"type":"user","content":[{"text":"<go on>"}]})";
    const QByteArray copy = R"({"$set":{"messages":[{"type":"error","content":"x"}]}})";
    EXPECT_EQ(after({copy}).turn, Turn::running);
    EXPECT_EQ(after({cancelled, result, copy}).turn, Turn::interrupted);
    EXPECT_EQ(after({cancelled, more}).turn, Turn::running);
    const TranscriptInfo failed = after({R"({"type":"error","content":"[API Error: 400]"})",
                                         R"({"type":"info","content":"This request failed."})"});
    EXPECT_EQ(failed.turn, Turn::failed);
    EXPECT_EQ(failed.failure, "[API Error: 400]");
    EXPECT_EQ(after({R"({"type":"error"})"}).turn, Turn::failed) << "of as few words as can be";
}

TEST_F(TranscriptFileTest, IsNotMisledByWhatGeminiWritesDownOnceMore) {
    const auto line = [](const char *time, const QByteArray &members) {
        return QByteArray(R"({"timestamp":"2026-11-26T13:57:)") + time + "Z\"," + members + "}\n";
    };
    const auto typed = [&](const char *time, const QByteArray &text) {
        return line(time, R"("type":"user","content":[{"text":")" + text + "\"}]");
    };
    const auto turnAfter = [&](const QByteArray &lines) {
        const QByteArray cancelled =
            line("29.900", R"("type":"info","content":"Request cancelled.")");
        return readBy(AgentKind::gemini, {typed("27.740", "Run it") + cancelled + lines}).turn;
    };
    const QByteArray copies = typed("29.901", "<session_context>") + typed("30.100", "Begin");
    EXPECT_EQ(turnAfter(copies), Turn::interrupted);
    EXPECT_EQ(turnAfter(copies + typed("32.000", "Go on")), Turn::running);
    EXPECT_EQ(turnAfter(copies + R"({"$set":{"messages":[")" + QByteArray(300'000, 'x') + "\"]}}"),
              Turn::interrupted);
    EXPECT_EQ(turnAfter(typed("?", "Begin")), Turn::running);
}

TEST_F(TranscriptFileTest, KnowsWhereATurnOfQwensWasInterrupted) {
    const auto after = [this](const QByteArray &line) {
        const QByteArray cancelled =
            R"({"type":"system","systemPayload":{"uiEvent":{"event.name":"qwen-code.tool_call",)"
            R"("status":"cancelled"}}})";
        return readBy(AgentKind::qwen, {cancelled, line}).turn;
    };
    EXPECT_EQ(after(R"({"type":"tool_result","provenance":"tool_result"})"), Turn::interrupted);
    EXPECT_EQ(after(R"({"type":"user","provenance":"real_user"})"), Turn::running);
    EXPECT_EQ(after(R"({"type":"assistant"})"), Turn::running);
}

TEST_F(TranscriptFileTest, IsReadFromItsEndThatMayLieWithinACharacterButMustBeText) {
    const QByteArray first = claudeModel("claude-first");
    EXPECT_EQ(read(first + padding(tailSize - first.size())).model, "first");
    EXPECT_EQ(read(first + padding(tailSize - first.size() + 1)).model, std::nullopt);
    const QByteArray last = "\n" + claudeModel("claude-last");
    for (const char *character : {"é", "漢", "🙂"}) {
        const QByteArray text = QByteArray(character).repeated(tailSize);
        for (int shift = 0; shift < 4; ++shift) {
            EXPECT_EQ(read(text + QByteArray(shift, ' ') + last).model, "last") << character;
        }
    }
    const QByteArray line = claudeModel("claude-a");
    EXPECT_EQ(read("\xff\n" + line), TranscriptInfo());
    EXPECT_EQ(read(line + "\xc3"), TranscriptInfo());
    EXPECT_EQ(read(QByteArray("\0\0\n", 3) + line).model, "a");
}

TEST_F(TranscriptFileTest, IsReadOnlyWhereItIsAFile) {
    const QString pipe = home.path("pipe.jsonl");
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString &path : {pipe, home.path(), QString("/dev/zero")}) {
        EXPECT_EQ(readClaude(path), TranscriptInfo()) << path.toStdString();
    }
}

/// Shortened, but otherwise as the agents wrote them.
TEST(TranscriptReader, ReadsWhatAgentsHaveWritten) {
    const QString data = QStringLiteral(TEST_DATA "/");
    EXPECT_EQ(readClaude(data + "claude.jsonl"),
              (TranscriptInfo{"opus-5-5", "The command is done.", 1000, "default", {}}));
    EXPECT_EQ(TranscriptReader::readTail(data + "codex.jsonl", CodexTranscript::takeLine),
              (TranscriptInfo{"gpt-5", "The command is done.", 1000, "on-request",
                              "Run `touch denied`", TranscriptInfo::Turn::ended, std::nullopt,
                              Date(std::chrono::milliseconds(1'767'298'434'917))}));
}

TEST_F(TranscriptFileTest, IsReadAsClaudesOwnOfAnAgentThatTookAfterIt) {
    for (const AgentKind agent : {AgentKind::qoder, AgentKind::codebuddy}) {
        EXPECT_EQ(readBy(agent, {claudeModel("claude-a")}).model, "a") << rawValue(agent);
    }
}

} // namespace
} // namespace morvane
