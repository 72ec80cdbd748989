#include "Core/Navigation/PaneFocus.h"

#include "Core/Ground/ToolPaths.h"
#include "Support/FakeProcesses.h"
#include "Support/FakeTools.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

namespace morvane {
namespace {

using Text = std::optional<QString>;

class PaneFocusTest : public testing::Test {
protected:
    TemporaryHome home;
    FakeTools tools;
    FakeProcesses processes;
    PaneLocator pane;
};

TEST_F(PaneFocusTest, FindsAToolOnlyWhereItsProgramLies) {
    EXPECT_FALSE(ToolPaths::find("a-tool"));
    home.write(".local/bin/a-tool");
    home.writeProgram(".cargo/bin/a-tool");
    EXPECT_EQ(ToolPaths::find("a-tool"), home.path(".cargo/bin/a-tool"));
    home.writeProgram(".local/bin/orca", "#!/usr/bin/python3\n");
    EXPECT_NE(ToolPaths::find("orca"), home.path(".local/bin/orca"));
}

TEST_F(PaneFocusTest, TellsOneTerminalToSelectItsPane) {
    for (const char *tool : {"wezterm", "kitty", "orca"}) {
        home.writeProgram(QStringLiteral(".local/bin/") + tool);
    }
    pane.orca = QStringLiteral("term-1");
    PaneFocus::focusTerminal(pane, tools);
    pane.kitty = QStringLiteral("3");
    pane.kittyListenOn = QStringLiteral("unix:@k");
    PaneFocus::focusTerminal(pane, tools);
    EXPECT_EQ(tools.commands.last().environment.value("KITTY_LISTEN_ON"), "unix:@k");
    pane.wezterm = QStringLiteral("0");
    pane.weztermSocket = QStringLiteral("/w");
    PaneFocus::focusTerminal(pane, tools);
    EXPECT_EQ(tools.commands.last().environment.value("WEZTERM_UNIX_SOCKET"), "/w");
    EXPECT_EQ(tools.lines(), QStringList({"orca terminal switch --terminal term-1",
                                          "kitty @ focus-window --match id:3",
                                          "wezterm cli activate-pane --pane-id 0"}));
    pane = {};
    pane.zellij = QStringLiteral("s");
    PaneFocus::focusTerminal(pane, tools);
    EXPECT_EQ(tools.commands.size(), 3);
}

TEST_F(PaneFocusTest, NamesTheServerOnlyWhereItIsKnownAndEndsNoCommandEarly) {
    const QStringList command{"send-keys", "a;", ";", "a\\;", "a;b", "", "-"};
    const QStringList words{"send-keys", "a\\;", "\\;", "a\\\\;", "a;b", "", "-"};
    EXPECT_EQ(PaneFocus::tmuxArguments(pane, command), words);
    pane.tmuxServer = QStringLiteral("/s,1,0");
    EXPECT_EQ(PaneFocus::tmuxArguments(pane, command), QStringList({"-S", "/s"}) + words);
}

TEST_F(PaneFocusTest, TakesATmuxPaneForGoneWithItsServer) {
    processes.listeners = {{"/s", 42}, {"/untold", 0}};
    const std::tuple<Text, Text, bool> cases[] = {
        {{}, "/s,42,0", false},   {"%3", "/s,42,0", true},
        {"%3", "/s,41,0", false}, {"%3", "/gone,42,0", false},
        {"%3", "/s,x,y", true},   {"%3", "/untold,42,0", true},
        {"%3", {}, true},
    };
    for (const auto &[target, server, isThere] : cases) {
        pane.tmux = target;
        pane.tmuxServer = server;
        EXPECT_EQ(PaneFocus::hasTmuxPane(pane, processes), isThere)
            << server.value_or("").toStdString();
    }
}

} // namespace
} // namespace morvane
