#include "Core/Navigation/TerminalReply.h"

#include "Core/Sessions/Session.h"
#include "Platform/NullScripting.h"
#include "Support/FakeProcesses.h"
#include "Support/FakeTools.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

class TerminalReplyTest : public testing::Test {
protected:
    TerminalReplyTest() {
        processes.listeners["/s"] = 7;
        session.pane.tmux = QStringLiteral("%1");
        session.pane.tmuxServer = QStringLiteral("/s,7,0");
        session.ttyName = QStringLiteral("/dev/pts/5");
        session.process = ProcessIdentity{42, 1, 1};
    }

    void send(const QString &text) {
        reply.send(
            text, session, [] { return true; }, [this](bool isSent) { outcomes << isSent; });
    }

    /// Lets everything happen that doesn't wait for time to pass.
    void typeAll() {
        while (tools.running() > 0) {
            EXPECT_EQ(tools.running(), 1u);
            tools.finish(tools.lines().last().contains("display-message") ? pane : QByteArray());
            scheduler.advance(Seconds(0));
        }
    }

    FakeTools tools;
    ManualScheduler scheduler;
    NullScripting scripting{scheduler};
    FakeProcesses processes;
    TerminalReply reply{tools, scripting, processes, scheduler};
    Session session;
    QByteArray pane = "/dev/pts/5 node\n";
    QList<bool> outcomes;
};

TEST_F(TerminalReplyTest, SubmitsOnlyWhatHasBeenTypedAndOneTextAfterTheOther) {
    send(QStringLiteral(" go on; \n"));
    send(QStringLiteral("-v"));
    const QString look = "tmux -S /s display-message -p -t %1 #{pane_tty} #{pane_current_command}";
    const QStringList first{look, "tmux -S /s copy-mode -q -t %1",
                            "tmux -S /s send-keys -t %1 -l go on\\;"};
    typeAll();
    EXPECT_EQ(tools.lines(), first);
    const QStringList second{"tmux -S /s send-keys -t %1 Enter", look,
                             "tmux -S /s copy-mode -q -t %1",
                             "tmux -S /s send-keys -t %1 -l -- -v"};
    scheduler.advance(Seconds(0.3));
    typeAll();
    EXPECT_EQ(tools.lines(), first + second);
    scheduler.advance(Seconds(0.3));
    typeAll();
    EXPECT_EQ(tools.lines().last(), second.first());
    EXPECT_EQ(outcomes, QList<bool>({true, true}));

    send(QStringLiteral("lost"));
    tools.finish(pane);
    scheduler.advance(Seconds(0));
    tools.finish(std::nullopt);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(tools.running(), 0u);
    EXPECT_EQ(outcomes.last(), false);
}

TEST_F(TerminalReplyTest, SendsNothingWhereNothingWouldArrive) {
    send(QStringLiteral(" \t\n\u001b"));
    processes.listeners["/s"] = 8;
    send(QStringLiteral("another server's pane"));
    session.pane = {};
    session.hostBundleID = QStringLiteral("com.apple.Terminal");
    session.itermSessionID = QStringLiteral("A-1");
    send(QStringLiteral("no way in"));
    EXPECT_EQ(outcomes, QList<bool>({false, false, false}));
    EXPECT_TRUE(tools.commands.isEmpty());
    session.hostBundleID.reset();
    send(QStringLiteral("by a script"));
    scheduler.runPosted();
    EXPECT_EQ(outcomes.last(), true);
}

TEST_F(TerminalReplyTest, TypesOnlyWhereTheAgentIsThatWaits) {
    const std::tuple<QByteArray, std::optional<bool>, bool> cases[] = {
        {"/dev/pts/5 node\n", {}, true},       {"/dev/pts/5 a b\n", true, true},
        {"/dev/pts/4 node\n", true, false},    {"\n", true, false},
        {"/dev/pts/5 zsh\n", {}, false},       {"/dev/pts/5 bash\n", true, true},
        {"/dev/pts/5 python3\n", false, false}};
    for (const auto &[answer, hears, isTyped] : cases) {
        processes.hearing[42] = hears;
        pane = answer;
        tools.commands.clear();
        send(QStringLiteral("go `on`"));
        typeAll();
        EXPECT_EQ(tools.commands.size(), isTyped ? 3 : 1) << answer.toStdString();
        scheduler.advance(Seconds(0.3));
        typeAll();
        EXPECT_EQ(outcomes.last(), isTyped) << answer.toStdString();
    }
    session.ttyName.reset();
    send(QStringLiteral("go on"));
    EXPECT_EQ(outcomes.last(), false);
    EXPECT_EQ(tools.running(), 0u);
}

TEST_F(TerminalReplyTest, PastesLinesAndPressesNoKeys) {
    EXPECT_EQ(TerminalReply::typable("a\r\nb\rc\td\x1b[201~\x7f\u0085 "), "a\nb\nc\td[201~");
    const QString pieces = QString(4095, QLatin1Char('x')) + QStringLiteral("🙂\n-");
    const auto commands = TerminalReply::typing(pieces, "%1");
    ASSERT_EQ(commands.size(), 5);
    EXPECT_EQ(commands[1], QStringList({"set-buffer", "-b", "morvane-reply", pieces.first(4095)}));
    EXPECT_EQ(commands[2], QStringList({"set-buffer", "-a", "-b", "morvane-reply", "🙂\n-"}));
    EXPECT_EQ(commands[3].join(' '), "paste-buffer -d -p -r -b morvane-reply -t %1");
    EXPECT_EQ(commands[4], QStringList({"send-keys", "-t", "%1", "Enter"}));
    // Nor can a text break out of its quotes in a script.
    EXPECT_TRUE(
        TerminalReply::script("say \"a\\b\" %1", "A-1").contains("\"say \\\"a\\\\b\\\" %1\"\n"));
}

} // namespace
} // namespace morvane
