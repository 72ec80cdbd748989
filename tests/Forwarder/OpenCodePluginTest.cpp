#include "CapturingListener.h"
#include "Core/Adapters/AgentRegistry.h"
#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Intake/HookEvent.h"
#include "EndToEnd/ChildProcess.h"
#include "Forwarder/TerminalCases.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <regex>
#include <sys/stat.h>
#include <vector>

namespace morvane::tests {

namespace {

const std::string okAnswer = response("200 OK", "");

/// One session from beginning to end. Text that no person has typed must be left out. A permission
/// shows the whole command, since the patterns are only its parts.
const QByteArray wholeTurn = R"([
    ["server.connected"],
    ["session.created", {"info": {"id": "ses_1"}}],
    ["chat.message", {"sessionID": "ses_1"}, {"parts": [
        {"type": "text", "text": "Deeper,"},
        {"type": "text", "text": "<file>", "synthetic": true},
        {"type": "text", "text": "please"}]}],
    ["tool.execute.before", {"tool": "write", "sessionID": "ses_1"},
        {"args": {"filePath": "engine.ts", "content": "a whole file"}}],
    ["tool.execute.before", {"tool": "bash", "sessionID": "ses_1"}, {}],
    ["permission.asked", {"id": "per_1", "sessionID": "ses_1", "permission": "bash",
        "patterns": ["touch a", "make"], "metadata": {"command": "touch a; make"}}],
    ["permission.asked", {}],
    ["permission.replied", {"requestID": "per_9"}],
    ["tool.execute.before", {"tool": "read", "sessionID": "ses_1"}, {"args": {}}],
    ["permission.replied", {"requestID": "per_1", "sessionID": "ses_1", "reply": "once"}],
    ["tool.execute.before", {"tool": "read", "sessionID": "ses_1"}, {"args": {}}],
    ["chat.message", {}, {}],
    ["session.idle", {"sessionID": "ses_1"}],
    ["session.deleted", {"info": {"id": "ses_1"}}]
])";

/// Runs a rendered plugin in node. It sends its events to whoever listens on the port, and prints
/// when its hooks have returned and when it has ended.
class OpenCodePlugin : public testing::Test {
protected:
    OpenCodePlugin() { environment.insert("PATH", qEnvironmentVariable("PATH")); }

    std::unique_ptr<ChildProcess> start(std::uint16_t port, const QByteArray &steps,
                                        const QByteArray &sessions = "{}",
                                        const QByteArray &environments = "[{}]") {
        const auto text = ForwarderScripts("0123-abcd", port).renderTemplate("opencode-plugin.js");
        return std::make_unique<ChildProcess>(
            QStringList{"sh", "-c", "exec node \"$0\" \"$1\" 2>&1", PLUGIN_DRIVER,
                        folder.write("morvane.mjs", text->toUtf8())},
            environment,
            R"({"sessions": )" + sessions + R"(, "steps": )" + steps + R"(, "environments": )" +
                environments + R"(, "limit": )" + limit + R"(, "gate": ")" + gate.toUtf8() + "\"}");
    }

    static void expectSilence(ChildProcess &process) {
        EXPECT_EQ(process.outputAtEnd(), "told\nover\n");
    }

    /// Expects that Morvane decodes exactly these events from a run, each with its session and
    /// details.
    void expectTold(const QByteArray &steps, const QByteArray &sessions,
                    const QStringList &expected) {
        CapturingListener listener(okAnswer);
        const auto process = start(listener.port(), steps, sessions);
        for (const QString &line : expected) {
            CapturedRequest request = listener.take();
            const HookEvent next =
                HookEvent::decode(AgentRegistry::adapter(AgentKind::opencode),
                                  QString::fromStdString(request.headers["x-hook-event"]),
                                  QByteArray::fromStdString(request.body), {})
                    .value_or(HookEvent());
            QString told = next.nativeName + " " + next.sessionID;
            for (const auto &text :
                 {next.responseMessage ? std::nullopt : next.toolName, next.toolDetail,
                  next.responseMessage, next.prompt, next.lastWords}) {
                told += text ? ": " + *text : "";
            }
            EXPECT_EQ(told, line);
            EXPECT_EQ(next.cwd, "/projects/asteroids");
        }
        expectSilence(*process);
    }

    TemporaryHome folder;
    QProcessEnvironment environment;
    QByteArray limit = "30000"; ///< milliseconds, in place of each limit of the plugin's
    QString gate;               ///< a FIFO that must be opened before the plugin reads a file
};

TEST_F(OpenCodePlugin, TellsOfATurnInOrderAndKeepsCallingWhileAnotherToolStarts) {
    expectTold(wholeTurn, "{}",
               {"session.created ses_1", "prompt.submit ses_1: Deeper, please",
                "tool.execute.before ses_1: write: engine.ts", "tool.execute.before ses_1: bash",
                "permission.asked ses_1: bash: touch a; make", "tool.execute.before ses_1: bash",
                "tool.execute.before ses_1: read", "session.idle ses_1", "session.deleted ses_1"});
}

TEST_F(OpenCodePlugin, TellsOfASubagentOnlyWhatThePersonHasToAnswer) {
    const QByteArray steps = R"([
        ["chat.message", {"sessionID": "ses_1"}, {"parts": []}],
        ["session.created", {"info": {"id": "ses_2", "parentID": "ses_1"}}],
        ["chat.message", {"sessionID": "ses_2"}, {"parts": []}],
        ["tool.execute.before", {"tool": "bash", "sessionID": "ses_2"}, {"args": {}}],
        ["tool.execute.before", {"tool": "bash", "sessionID": "ses_old"}, {"args": {}}],
        ["permission.asked", {"id": "per_1", "sessionID": "ses_2", "permission": "bash",
            "patterns": ["make"]}],
        ["question.asked", {"id": "que_1", "sessionID": "ses_old",
            "questions": [{"question": "Which?", "options": []}]}],
        ["permission.replied", {"requestID": "per_1", "sessionID": "ses_2", "reply": "always"}],
        ["question.replied", {"requestID": "que_1", "sessionID": "ses_old"}],
        ["session.idle", {"sessionID": "ses_2"}],
        ["session.deleted", {"info": {"id": "ses_2", "parentID": "ses_1"}}],
        ["session.idle", {"sessionID": "ses_1"}]
    ])";
    const QByteArray earlier = R"({"ses_1": {}, "ses_old": {"parentID": "ses_1"}})";
    // Of the two requests one is answered, and the other is on the screen now.
    expectTold(steps, earlier,
               {"prompt.submit ses_1", "permission.asked ses_1: bash: make",
                "permission.asked ses_1: Which?", "permission.asked ses_1: Which?",
                "tool.execute.before ses_1", "session.idle ses_1", "session.deleted ses_1"});
}

TEST_F(OpenCodePlugin, TellsHowATurnHasEnded) {
    const QByteArray steps = R"([
        ["session.idle", {"sessionID": "ses_1"}],
        ["session.error", {"sessionID": "ses_1", "error":
            {"name": "APIError", "data": {"message": "Bad Request"}}}],
        ["session.idle", {"sessionID": "ses_1"}],
        ["session.idle", {"sessionID": "ses_1"}],
        ["session.error", {"sessionID": "ses_1", "error": {"name": "MessageAbortedError"}}],
        ["session.idle", {"sessionID": "ses_1"}],
        ["session.idle", {"sessionID": "ses_1"}],
        ["session.error", {"sessionID": "ses_1", "error": {"name": "APIError"}}],
        ["chat.message", {"sessionID": "ses_1"}, {"parts": []}],
        ["session.idle", {"sessionID": "ses_1"}]
    ])";
    expectTold(steps, R"({"ses_1": {"said": "All done."}})",
               {"session.idle ses_1: All done.", "session.error ses_1: Bad Request",
                "session.created ses_1", "prompt.submit ses_1", "session.idle ses_1: All done.",
                "session.deleted ses_1"});
}

TEST_F(OpenCodePlugin, SaysWhereItRuns) {
    const std::vector<TerminalCase> cases = terminalCases();
    const std::vector<NameCase> names = nameCases();
    QJsonArray environments;
    const auto add = [&](const std::vector<std::string> &variables) {
        QJsonObject environment;
        for (const std::string &variable : variables) {
            const auto text = QString::fromStdString(variable);
            environment.insert(text.section('=', 0, 0), text.section('=', 1));
        }
        environments.append(environment);
    };
    for (const TerminalCase &one : cases) {
        add(one.environment);
    }
    for (const NameCase &one : names) {
        add({one.variable});
    }
    CapturingListener listener(okAnswer);
    const auto process = start(listener.port(), R"([["session.created", {"info": {"id": "s"}}]])",
                               "{}", QJsonDocument(environments).toJson());
    for (const TerminalCase &one : cases) {
        SCOPED_TRACE(one.name);
        CapturedRequest request = listener.take();
        EXPECT_EQ(request.requestLine, "POST /event HTTP/1.1");
        EXPECT_EQ(request.headers["x-morvane-token"], "0123-abcd");
        EXPECT_EQ(request.headers["x-morvane-agent"], "opencode");
        EXPECT_EQ(request.headers["x-hook-event"], "session.created");
        EXPECT_EQ(request.host(), one.headers);
        // OpenCode's own process: its id, its start time and its PID namespace.
        EXPECT_TRUE(
            std::regex_match(request.headers["x-morvane-process"], std::regex("\\d+ \\d+ \\d+")));
        EXPECT_EQ(listener.take().headers["x-hook-event"], "session.deleted");
    }
    for (const auto &[variable, header, value] : names) {
        EXPECT_EQ(listener.take().headers[header], value) << variable;
        EXPECT_EQ(listener.take().headers[header], value) << variable;
    }
    EXPECT_EQ(process->wait(), 0);
}

TEST_F(OpenCodePlugin, SaysNothingToAnotherUser) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "needs root";
    }
    for (const std::string address : {"127.0.0.1", "0.0.0.0", "::"}) {
        CapturingListener stranger(okAnswer, address, 4711);
        expectSilence(*start(stranger.port(), wholeTurn));
        EXPECT_TRUE(stranger.hasHeardNothing()) << address;
    }
    // The port is ours again, but the connections that the stranger accepted are still his.
    CapturingListener stranger(okAnswer, "127.0.0.1", geteuid(), 4711);
    gate = folder.path() + "/gate";
    ASSERT_EQ(mkfifo(qPrintable(gate), 0600), 0);
    const auto process = start(stranger.port(), R"([["session.created", {"info": {"id": "s"}}]])");
    for ([[maybe_unused]] const char *told : {"session.created", "session.deleted"}) {
        EXPECT_TRUE(stranger.awaitConnection());
        std::ofstream(gate.toStdString()).close();
    }
    expectSilence(*process);
    EXPECT_TRUE(stranger.hasHeardNothing());
}

TEST_F(OpenCodePlugin, HoldsNothingUpWhenNobodyListensOrAnswers) {
    expectSilence(*start(portWithoutServer(), wholeTurn));
    CapturingListener listener(std::nullopt);
    limit = "null"; // the plugin's own
    const auto unanswered = start(listener.port(), wholeTurn);
    EXPECT_EQ(unanswered->readLine(), "told");
    EXPECT_NE(listener.take().requestLine, "");
    EXPECT_EQ(unanswered->readLine(), "over");
}

} // namespace

} // namespace morvane::tests
