#include "Core/Navigation/TerminalReply.h"

#include "Core/Sessions/Session.h"
#include "Platform/NoScripting.h"
#include "Support/FakeProcesses.h"
#include "Support/FakeTools.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

class TerminalReplyTest : public testing::Test {
protected:
    TerminalReplyTest() {
        processes.listeners["/s"] = 7;
        session.pane.tmux = QStringLiteral("%1");
        session.pane.tmuxServer = QStringLiteral("/s,7,0");
    }

    void send(const QString &text) {
        reply.send(text, session, [this](bool isSent) { outcomes << isSent; });
    }

    /// Lets everything happen that doesn't wait for time to pass.
    void typeAll() {
        while (tools.running() > 0) {
            EXPECT_EQ(tools.running(), 1u);
            tools.finish(QByteArray());
            scheduler.advance(Seconds(0));
        }
    }

    FakeTools tools;
    ManualScheduler scheduler;
    NoScripting scripting{scheduler};
    FakeProcesses processes;
    TerminalReply reply{tools, scripting, processes, scheduler};
    Session session;
    QList<bool> outcomes;
};

TEST_F(TerminalReplyTest, SubmitsOnlyWhatHasBeenTypedAndOneTextAfterTheOther) {
    send(QStringLiteral(" go on; \n"));
    send(QStringLiteral("-v"));
    const QStringList first{"tmux -S /s copy-mode -q -t %1",
                            "tmux -S /s send-keys -t %1 -l go on\\;"};
    typeAll();
    EXPECT_EQ(tools.lines(), first);
    const QStringList second{"tmux -S /s send-keys -t %1 Enter", "tmux -S /s copy-mode -q -t %1",
                             "tmux -S /s send-keys -t %1 -l -- -v"};
    scheduler.advance(Seconds(0.3));
    typeAll();
    EXPECT_EQ(tools.lines(), first + second);
    scheduler.advance(Seconds(0.3));
    typeAll();
    EXPECT_EQ(tools.lines().last(), second.first());
    EXPECT_EQ(outcomes, QList<bool>({true, true}));

    send(QStringLiteral("lost"));
    tools.finish(QByteArray());
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

TEST_F(TerminalReplyTest, PastesLinesAndPressesNoKeys) {
    EXPECT_EQ(TerminalReply::typable("a\r\nb\rc\td\x1b[201~\x7f\u0085 "), "a\nb\nc\td[201~");
    const QString pieces = QString(4095, QLatin1Char('x')) + QStringLiteral("🙂\n-");
    const auto commands = TerminalReply::typing(pieces, "%1");
    ASSERT_EQ(commands.size(), 5);
    EXPECT_EQ(commands[1], QStringList({"set-buffer", "-b", "morvane-reply", pieces.first(4095)}));
    EXPECT_EQ(commands[2], QStringList({"set-buffer", "-a", "-b", "morvane-reply", "🙂\n-"}));
    EXPECT_EQ(commands[3].join(' '), "paste-buffer -d -p -r -b morvane-reply -t %1");
    EXPECT_EQ(commands[4], QStringList({"send-keys", "-t", "%1", "Enter"}));
}

TEST_F(TerminalReplyTest, WritesAScriptThatTypesWithoutComingForward) {
    const QString script = TerminalReply::script("say \"a\\b\" %1", "A-1");
    EXPECT_TRUE(script.contains("(unique id of s) is \"A-1\" then\n"
                                "          tell s to write text \"say \\\"a\\\\b\\\" %1\"\n"));
    EXPECT_FALSE(script.contains("activate"));
}

} // namespace
} // namespace morvane
