#include "Core/Navigation/HostApp.h"
#include "Core/Navigation/JumpService.h"
#include "Core/Navigation/TerminalReply.h"
#include "Core/Sessions/Session.h"
#include "Platform/Linux/BoundedTools.h"
#include "Platform/Linux/LinuxProcesses.h"
#include "Platform/NullScripting.h"
#include "Support/FakeHostWindows.h"
#include "Support/ManualPool.h"
#include "Support/ManualScheduler.h"
#include "Support/NoApplications.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace morvane {
namespace {

/// A real tmux server at a socket of the test's own. No tool is ended for being slow, since time
/// stands still.
class TmuxTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char *program : {"tmux", "script"}) {
            if (QStandardPaths::findExecutable(program).isEmpty()) {
                GTEST_SKIP() << program << " is not installed";
            }
        }
    }

    ~TmuxTest() override {
        tmux({"kill-server"});
        for (const auto &client : m_clients) {
            client->waitForFinished();
        }
    }

    QString tmux(const QStringList &arguments) const {
        QProcess process;
        process.start("tmux", QStringList{"-f", "/dev/null", "-S", m_socket} + arguments);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    /// Waits until the client isn't listed any more, which takes until it has heard of it.
    void detach(const QString &session) const {
        tmux({"detach-client", "-s", session});
        EXPECT_TRUE(waitUntil([&] {
            return !tmux({"list-clients", "-F", "#{client_session}"}).contains(session);
        }));
    }

    QString ttyOf(const PaneLocator &pane) const {
        return tmux({"display-message", "-p", "-t", *pane.tmux, "#{pane_tty}"});
    }

    /// Opens a window with this program in it; yields its pane.
    PaneLocator open(const QStringList &command, const QString &program) const {
        PaneLocator pane;
        pane.tmux =
            tmux(command + QStringList{"-P", "-F", "#{pane_id}", "-x", "80", "-y", "24", program});
        pane.tmuxServer = m_socket + "," + tmux({"display-message", "-p", "#{pid}"}) + ",0";
        return pane;
    }

    /// Attaches a terminal to a tmux session; yields the terminal's device.
    QString attach(const QString &session) {
        const QString told = m_folder.path(session + ".tty");
        auto client = std::make_unique<QProcess>();
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TERM", "xterm");
        client->setProcessEnvironment(environment);
        client->start("script",
                      {"-qfc",
                       "tty >" + told + "; exec tmux -S " + m_socket + " attach -t " + session,
                       "/dev/null"});
        m_clients.push_back(std::move(client));
        EXPECT_TRUE(becomesTrue([&] {
            return tmux({"list-clients", "-F", "#{client_session}"}).contains(session);
        }));
        return QString::fromUtf8(m_folder.read(session + ".tty")).trimmed();
    }

    TemporaryHome m_folder;
    QString m_socket = m_folder.path("socket");
    std::vector<std::unique_ptr<QProcess>> m_clients;
    ManualScheduler scheduler;
    BoundedTools tools{scheduler};
    NullScripting scripting{scheduler};
    ManualPool background;
    LinuxProcesses processes{scheduler, background};
    FakeHostWindows windows;
};

TEST_F(TmuxTest, AJumpSelectsThePaneAndComesToTheTerminalThatShowsIt) {
    open({"new-session", "-d", "-s", "one"}, "sleep 600");
    const PaneLocator other = open({"new-session", "-d", "-s", "two"}, "sleep 600");
    tmux({"new-window", "-t", "one", "sleep 600"});
    JumpService::Destination destination;
    destination.projectName = "webshop";
    destination.pane = other;
    destination.pane.tmux =
        tmux({"split-window", "-t", "one:0", "-P", "-F", "#{pane_id}", "sleep 600"});
    tmux({"select-pane", "-t", "one:0.0"});
    const QString first = attach("one");
    const QString second = attach("two");
    windows.terminals = QStringList{first, second};
    const auto jumped = [&] {
        windows.calls.clear();
        JumpService::jump(destination, {tools, processes, scripting, windows});
        EXPECT_TRUE(becomesTrue([&] { return !windows.calls.isEmpty(); }));
        return windows.calls;
    };
    EXPECT_EQ(jumped(), QStringList{"show " + first});
    EXPECT_EQ(tmux({"display-message", "-p", "-t", "one", "#{pane_id}"}), *destination.pane.tmux);
    destination.pane = other;
    EXPECT_EQ(jumped(), QStringList{"show " + second});

    // A pane that no terminal shows is shown in the only terminal there is.
    detach("two");
    EXPECT_EQ(jumped(), QStringList{"show " + first});
    EXPECT_EQ(tmux({"list-clients", "-F", "#{pane_id}"}), *other.tmux);
    destination.ttyName = first; // not the pane's own
    EXPECT_EQ(jumped(), QStringList({"show " + first, "show " + first}));
    detach("two");
    destination.ttyName = ttyOf(other);
    EXPECT_EQ(jumped(), QStringList{"launch com.googlecode.iterm2"});
}

/// As in the terminal of an editor, which passes the pane's name on to its shell.
TEST_F(TmuxTest, WhatRunsInATerminalWithinThePaneIsFoundAndOfferedNoReply) {
    Session session;
    session.pane = open({"new-session", "-d", "-s", "one"},
                        "script -qfc 'tty >" + m_folder.path("tty") + "; echo $$ >" +
                            m_folder.path("id") + "; exec cat' /dev/null");
    EXPECT_TRUE(becomesTrue([&] { return m_folder.read("id").endsWith('\n'); }));
    const auto canReply = [&] {
        session.process = processes.identityOf(m_folder.read("id").trimmed().toLongLong());
        EXPECT_TRUE(session.process);
        return HostApp::canBeTypedInto(session, NoApplications(), processes);
    };
    session.ttyName = QString::fromUtf8(m_folder.read("tty")).trimmed();
    EXPECT_FALSE(canReply());
    const QString client = attach("one");
    windows.terminals = QStringList{client};
    JumpService::jump(JumpService::Destination::of(session),
                      {tools, processes, scripting, windows});
    EXPECT_TRUE(becomesTrue([&] { return windows.calls.size() == 2; }));
    EXPECT_EQ(windows.calls, QStringList({"show " + *session.ttyName, "show " + client}));

    QFile::remove(m_folder.path("id"));
    session.pane = open({"new-session", "-d", "-s", "two"},
                        "echo $$ >" + m_folder.path("id") + "; exec sleep 600");
    session.ttyName = ttyOf(session.pane);
    EXPECT_TRUE(becomesTrue([&] { return m_folder.read("id").endsWith('\n'); }));
    EXPECT_TRUE(becomesTrue([&] { return canReply(); }));
}

/// The program reads keys as agents do: raw, and with bracketed paste.
TEST_F(TmuxTest, RepliesArriveAsTheyAreOneAfterTheOther) {
    Session session;
    session.pane =
        open({"new-session", "-d", "-s", "one"},
             "stty raw -echo; printf '\\033[?2004h'; exec cat >" + m_folder.path("typed"));
    session.ttyName = ttyOf(session.pane);
    EXPECT_TRUE(becomesTrue([&] {
        return tmux({"display-message", "-p", "-t", *session.pane.tmux,
                     "#{pane_current_command}"}) == "cat";
    }));
    // Somebody scrolls back in the pane: in copy mode keys mean something else.
    tmux({"copy-mode", "-t", *session.pane.tmux});
    ManualScheduler pauses;
    TerminalReply reply(tools, scripting, processes, pauses);
    const QStringList texts{"Say \"it's\" $HOME `ls` \\n \\",
                            "Enter",
                            "-l",
                            "done;",
                            "\\;",
                            ";",
                            "🙂 %1 #{pid}",
                            "C-c",
                            "two\nlines;",
                            "- a\n\tb",
                            "--"};
    QByteArray expected;
    int sent = 0;
    for (int round = 0; round < 3; ++round) {
        for (const QString &text : texts) {
            reply.send(
                text, session, [] { return true; }, [&](bool isSent) { sent += isSent ? 1 : 0; });
            expected += text.contains('\n') ? "\x1b[200~" + text.toUtf8() + "\x1b[201~\r"
                                            : text.toUtf8() + "\r";
        }
    }
    EXPECT_TRUE(becomesTrue([&] {
        pauses.advance(Seconds(1));
        return sent == 3 * texts.size();
    }));
    EXPECT_TRUE(becomesTrue([&] { return m_folder.read("typed").size() >= expected.size(); }));
    EXPECT_EQ(m_folder.read("typed").toStdString(), expected.toStdString());
    EXPECT_EQ(tmux({"list-buffers"}), "");
}

/// The agent is a child of a shell that waits for it.
TEST_F(TmuxTest, RepliesGoToNobodyButTheAgent) {
    Session session;
    session.pane = open({"new-session", "-d", "-s", "one"},
                        "sh -c 'echo $$ >" + m_folder.path("id") + "; exec cat >" +
                            m_folder.path("typed") + "'; exec sh");
    session.ttyName = ttyOf(session.pane);
    EXPECT_TRUE(becomesTrue([&] { return QFile::exists(m_folder.path("typed")); }));
    session.process = processes.identityOf(m_folder.read("id").trimmed().toLongLong());
    ASSERT_TRUE(session.process);
    ManualScheduler pauses;
    TerminalReply reply(tools, scripting, processes, pauses);
    const auto isSent = [&] {
        std::optional<bool> result;
        reply.send(
            "touch " + m_folder.path("harm"), session, [] { return true; },
            [&](bool outcome) { result = outcome; });
        EXPECT_TRUE(becomesTrue([&] {
            pauses.advance(Seconds(1));
            return result.has_value();
        }));
        return result == true;
    };
    EXPECT_TRUE(isSent());
    session.ttyName = attach("one");
    EXPECT_FALSE(isSent());
    session.ttyName = ttyOf(session.pane);
    // Control-D at the beginning of a line ends the agent, and leaves the shell.
    tmux({"send-keys", "-t", *session.pane.tmux, "C-d"});
    EXPECT_TRUE(becomesTrue([&] { return !processes.hearsKeys(*session.process); }));
    EXPECT_FALSE(isSent());
    // Not even a shell that was taken for the agent gets it.
    const QString shell = tmux({"display-message", "-p", "-t", *session.pane.tmux, "#{pane_pid}"});
    session.process = processes.identityOf(shell.toLongLong());
    EXPECT_FALSE(isSent());
    EXPECT_TRUE(m_folder.read("typed").startsWith("touch "));
    EXPECT_FALSE(QFile::exists(m_folder.path("harm")));
}

} // namespace
} // namespace morvane
