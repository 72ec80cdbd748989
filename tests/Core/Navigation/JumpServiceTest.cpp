#include "Core/Navigation/JumpService.h"

#include "Core/Sessions/Session.h"
#include "Platform/Scripting.h"
#include "Support/FakeHostWindows.h"
#include "Support/FakeProcesses.h"
#include "Support/FakeTools.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

namespace morvane {
namespace {

using namespace JumpService;
using Text = std::optional<QString>;

/// Answers each script as the test wants it.
class FakeScripting : public Scripting {
public:
    void run(const QString &, std::function<void(const Text &)> finished) override {
        finished(answer);
    }

    Text answer;
};

class JumpServiceTest : public testing::Test {
protected:
    JumpServiceTest() {
        destination.projectName = QStringLiteral("webshop");
        destination.hostBundleID = QStringLiteral("net.kovidgoyal.kitty");
    }

    QStringList jumped() {
        windows.calls.clear();
        jump(destination, {tools, processes, scripting, windows});
        return windows.calls;
    }

    /// Answers tmux's commands: where the pane is, two that select it, and who shows it.
    void answerTmux(const QByteArray &pane, const QByteArray &clients) {
        for (const QByteArray &answer : {pane, QByteArray(), QByteArray(), clients}) {
            tools.finish(answer);
        }
    }

    static QList<HostWindow> titled(const QStringList &titles) {
        QList<HostWindow> result;
        for (const QString &title : titles) {
            result.append({QString::number(result.size()), title});
        }
        return result;
    }

    TemporaryHome home;
    Destination destination;
    FakeTools tools;
    FakeProcesses processes;
    FakeScripting scripting;
    FakeHostWindows windows;
};

TEST_F(JumpServiceTest, DecidesByTheHostAndWhatItsSessionIsCalled) {
    const std::tuple<Text, Text, Text, Text, Step> cases[] = {
        {{}, {}, "w0t1p0:A-1", {}, ITermSession{"A-1"}},
        {{}, "iTerm.app", "A-1:", {}, ITermSession{"A-1"}},
        {{}, "iTerm.app", "::", "ttys001", TerminalPane{}},
        {{}, "ghostty", "w0t1p0:A-1", "/dev/pts/1", TerminalPane{}},
        {"com.apple.Terminal", {}, "A-1", "/dev/ttys001", TerminalTab{"/dev/ttys001"}},
        {{}, "Apple_Terminal", {}, "", TerminalPane{}}};
    for (const auto &[host, program, iterm, tty, step] : cases) {
        EXPECT_EQ(firstStep({iterm, program, host, {}, {}, tty, {}}), step)
            << host.value_or("").toStdString();
    }
}

TEST_F(JumpServiceTest, TakesAnythingButATerminalAloneForAPlace) {
    Session session;
    session.cwd = QStringLiteral("/home/me/webshop/");
    session.ttyName = QStringLiteral("/dev/pts/3");
    session.pane.tmuxServer = QStringLiteral("/tmp/tmux-1000/default,1,0");
    EXPECT_FALSE(Destination::of(session).isPlace());
    EXPECT_EQ(Destination::of(session).projectName, "webshop");
    for (auto hint : {&Session::itermSessionID, &Session::termProgram, &Session::hostBundleID}) {
        Session hinted = session;
        hinted.*hint = QStringLiteral("x");
        EXPECT_TRUE(Destination::of(hinted).isPlace());
    }
    session.pane.zellij = QStringLiteral("x");
    EXPECT_TRUE(Destination::of(session).isPlace());
}

TEST_F(JumpServiceTest, FindsTheWindowOfAProjectByWhatItsTitleIsMadeOf) {
    EXPECT_EQ(titleComponents(" main.cpp – webshop — Editor - x · y |  | "),
              QStringList({"main.cpp", "webshop", "Editor", "x", "y", "", ""}));
    EXPECT_EQ(titleComponents("a-b—c|d"), QStringList{"a-b—c|d"});
    const std::tuple<QStringList, QString, Text> cases[] = {
        {{"webshop-next – a.ts", "b.ts - Webshop"}, "webshop", "b.ts - Webshop"},
        {{"vim", "~/Webshop-next", "my webshop"}, "webshop", "~/Webshop-next"},
        {{"ÜBUNG | x"}, "übung", "ÜBUNG | x"},
        {{"", "vim"}, "session", {}}};
    for (const auto &[titles, project, title] : cases) {
        const auto window = windowOf(project, titled(titles));
        EXPECT_EQ(window ? Text(window->title) : std::nullopt, title);
    }
}

TEST_F(JumpServiceTest, BringsTheHostForwardOrStartsItWhereItIsKnownNotToRun) {
    EXPECT_EQ(jumped(), QStringList{"launch net.kovidgoyal.kitty"});
    windows.running["net.kovidgoyal.kitty"] = titled({"vim", "webshop"});
    EXPECT_EQ(jumped(), QStringList{"activate 1"});
    destination.projectName = QStringLiteral("infra");
    EXPECT_EQ(jumped(), QStringList{"activate 0"});
    windows.tellsWindows = false;
    EXPECT_EQ(jumped(), QStringList());
}

TEST_F(JumpServiceTest, AsksTheTerminalItselfWhereItsDeviceIsKnown) {
    destination.ttyName = QStringLiteral("/dev/pts/5");
    EXPECT_EQ(jumped(), QStringList({"show /dev/pts/5", "launch net.kovidgoyal.kitty"}));
    windows.terminals << QStringLiteral("/dev/pts/5");
    EXPECT_EQ(jumped(), QStringList{"show /dev/pts/5"});
    windows.openedAt = destination.toldAt + Seconds(1); // another terminal that has the name by now
    EXPECT_EQ(jumped(), QStringList({"show /dev/pts/5", "launch net.kovidgoyal.kitty"}));
    windows.otherwise = HostWindows::Showing::elsewhere; // such as a login over the network
    EXPECT_EQ(jumped(), QStringList{"show /dev/pts/5"});
}

TEST_F(JumpServiceTest, GoesToTheTerminalThatShowsTheTmuxPane) {
    destination.ttyName = QStringLiteral("/dev/pts/5"); // the pane's own
    destination.pane.kitty = QStringLiteral("1");       // where the tmux server was started
    destination.pane.tmux = QStringLiteral("%3");
    destination.pane.tmuxServer = QStringLiteral("/s,42,0");
    processes.listeners["/s"] = 42;
    windows.terminals << QStringLiteral("/dev/pts/8");
    processes.environments[80] = {"KITTY_WINDOW_ID=2"};
    home.writeProgram(".local/bin/kitty");
    EXPECT_EQ(jumped(), QStringList());
    windows.openedAt = destination.toldAt + Seconds(1); // a tmux client may be opened later
    answerTmux("/dev/pts/5 vim\n", "90 %33 90 /dev/pts/9\n95 %3 95 \nx\n60 %3 80 /dev/pts/8\n"
                                   "50 %3 70 /dev/pts/7\n");
    EXPECT_EQ(tools.lines().last(), "kitty @ focus-window --match id:2");
    tools.finish(QByteArray());
    EXPECT_EQ(windows.calls, QStringList{"show /dev/pts/8"});

    // The terminal that started the server needn't be the one that shows the pane.
    windows.terminals.clear();
    for (const auto &[term, program] :
         {std::pair("TERM=foot", "foot"), {"TERM=xterm", "com.googlecode.iterm2"}}) {
        processes.environments[80] = {term};
        jumped();
        answerTmux("/dev/pts/5 vim\n", "60 %3 80 /dev/pts/8\n");
        EXPECT_EQ(windows.calls.last(), QStringLiteral("launch ") + program);
    }

    // A server that hangs halfway, and one whose socket another server has taken.
    destination.pane.kitty.reset();
    jumped();
    tools.finish(QByteArray("/dev/pts/5 vim\n"));
    tools.finish(std::nullopt);
    tools.finish(std::nullopt);
    EXPECT_EQ(windows.calls, QStringList{"launch net.kovidgoyal.kitty"});
    processes.listeners["/s"] = 43;
    EXPECT_EQ(jumped(), QStringList{"launch net.kovidgoyal.kitty"});
    EXPECT_EQ(tools.running(), 0u);
}

TEST_F(JumpServiceTest, PassesOverATmuxPaneThatIsOfAnotherTerminalUnlessThatLiesWithin) {
    destination.ttyName = QStringLiteral("/dev/pts/5");
    destination.pane.tmux = QStringLiteral("%3"); // from which the session's terminal was started
    jumped();
    tools.finish(std::nullopt);
    EXPECT_EQ(tools.running(), 0u);
    EXPECT_EQ(windows.calls, QStringList({"show /dev/pts/5", "launch net.kovidgoyal.kitty"}));
    // In a terminal inside the pane, the kitty window is that of whoever started the server.
    destination.pane.kitty = QStringLiteral("1");
    home.writeProgram(".local/bin/kitty");
    jumped();
    tools.finish(QByteArray("/dev/pts/4 nvim\n"));
    EXPECT_EQ(windows.calls, QStringList{"show /dev/pts/5"});
    EXPECT_EQ(tools.lines().last(), "tmux select-window -t %3");
    EXPECT_FALSE(tools.lines().contains("kitty @ focus-window --match id:1"));
    while (tools.running() > 0) {
        tools.finish(std::nullopt);
    }

    const auto jumpedFromBash = [this] {
        jumped();
        tools.finish(QByteArray("/dev/pts/4 bash\n"));
        return windows.calls.sliced(1);
    };
    windows.otherwise = HostWindows::Showing::elsewhere;
    EXPECT_EQ(jumpedFromBash(), QStringList());
    EXPECT_EQ(tools.running(), 0u);
    windows.otherwise = HostWindows::Showing::amongSeveral;
    EXPECT_EQ(jumpedFromBash(), QStringList({"show /dev/pts/5", "launch net.kovidgoyal.kitty"}));
    EXPECT_EQ(tools.lines().last(), "kitty @ focus-window --match id:1");
}

TEST_F(JumpServiceTest, LetsAScriptSelectWhatOnlyAScriptCan) {
    destination.hostBundleID = QStringLiteral("com.googlecode.iterm2");
    destination.itermSessionID = QStringLiteral("w0t0p0:A-1");
    scripting.answer = QStringLiteral("found");
    EXPECT_EQ(jumped(), QStringList());
    scripting.answer = QStringLiteral("not found");
    EXPECT_EQ(jumped(), QStringList{"launch com.googlecode.iterm2"});

    destination.hostBundleID = QStringLiteral("com.apple.Terminal");
    destination.ttyName = QStringLiteral("/dev/no terminal");
    scripting.answer = QStringLiteral("found");
    EXPECT_EQ(jumped().last(), "launch com.apple.Terminal");
}

} // namespace
} // namespace morvane
