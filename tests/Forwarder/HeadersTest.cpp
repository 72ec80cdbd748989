#include "CapturingListener.h"
#include "HookProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <pty.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

namespace morvane::tests {

namespace {

using Headers = std::map<std::string, std::string>;

struct TerminalCase {
    std::string name;
    std::vector<std::string> environment;
    Headers headers;
};

std::vector<TerminalCase> terminalCases() {
    const std::string cursor = "com.todesktop.230313mzl4w4u92";
    return {
        {"nothing known", {}, {}},
        {"tmux inside iTerm2",
         {"TERM_PROGRAM=tmux", "TERM=tmux-256color", "ITERM_SESSION_ID=w0:AB", "TMUX=/t/d,7,0",
          "TMUX_PANE=%3"},
         {{"x-term-program", "iTerm.app"},
          {"x-host-bundle", "com.googlecode.iterm2"},
          {"x-iterm-session", "w0:AB"},
          {"x-tmux-server", "/t/d,7,0"},
          {"x-tmux-pane", "%3"}}},
        {"an older tmux inside WezTerm",
         {"TERM_PROGRAM=WezTerm", "TERM=screen", "WEZTERM_PANE=4", "TMUX=/t/d,7,0", "TMUX_PANE=%3"},
         {{"x-term-program", "WezTerm"},
          {"x-host-bundle", "com.github.wez.wezterm"},
          {"x-wezterm-pane", "4"},
          {"x-tmux-server", "/t/d,7,0"},
          {"x-tmux-pane", "%3"}}},
        {"tmux that passes on the terminal's own TERM",
         {"TERM_PROGRAM=tmux", "TERM=xterm-kitty", "TMUX=/t/d,7,0", "TMUX_PANE=%3"},
         {{"x-term-program", "kitty"},
          {"x-host-bundle", "net.kovidgoyal.kitty"},
          {"x-tmux-server", "/t/d,7,0"},
          {"x-tmux-pane", "%3"}}},
        {"kitty started from WezTerm",
         {"TERM=xterm-kitty", "KITTY_WINDOW_ID=12", "TERM_PROGRAM=WezTerm", "WEZTERM_PANE=4"},
         {{"x-term-program", "kitty"},
          {"x-host-bundle", "net.kovidgoyal.kitty"},
          {"x-kitty-window", "12"}}},
        {"VS Code started from tmux inside kitty",
         {"TERM=xterm-256color", "TERM_PROGRAM=vscode", "KITTY_WINDOW_ID=12", "TMUX=/t/d,7,0",
          "TMUX_PANE=%3", "GIO_LAUNCHED_DESKTOP_FILE=/usr/share/applications/kitty.desktop"},
         {{"x-term-program", "vscode"}, {"x-host-bundle", "com.microsoft.VSCode"}}},
        {"Cursor by its place",
         {"TERM_PROGRAM=vscode", "VSCODE_GIT_ASKPASS_NODE=/usr/share/cursor/cursor"},
         {{"x-term-program", "vscode"}, {"x-host-bundle", cursor}}},
        {"Orca under another name",
         {"TERM_PROGRAM=vscode", "ORCA_TERM_PROGRAM=Orca", "ORCA_TERMINAL_HANDLE=term_1"},
         {{"x-term-program", "Orca"},
          {"x-host-bundle", "com.stablyai.orca"},
          {"x-orca-terminal", "term_1"}}},
        {"a JetBrains IDE by its folder, started from WezTerm",
         {"TERMINAL_EMULATOR=JetBrains-JediTerm", "TERM_PROGRAM=WezTerm", "WEZTERM_PANE=4",
          "__INTELLIJ_COMMAND_HISTFILE__=/h/.cache/JetBrains/WebStorm2024.1/history"},
         {{"x-term-program", "JetBrains-JediTerm"}, {"x-host-bundle", "com.jetbrains.WebStorm"}}},
        {"another application by its entry",
         {"GIO_LAUNCHED_DESKTOP_FILE=/usr/share/applications/org.gnome.Console.desktop"},
         {{"x-host-bundle", "org.gnome.Console"}}},
        {"a known application by its entry",
         {"GIO_LAUNCHED_DESKTOP_FILE=/usr/share/applications/cursor.desktop"},
         {{"x-host-bundle", cursor}}},
        {"line breaks in a variable",
         {"ZELLIJ_SESSION_NAME=großer a\r\nx-morvane-decision: 1\n\nb"},
         {{"x-zellij-session", "großer ax-morvane-decision: 1b"}}},
        {"another locale and separator",
         {"LC_ALL=C.UTF-8", "IFS=x-", "TERM_PROGRAM=ghostty"},
         {{"x-term-program", "ghostty"}, {"x-host-bundle", "com.mitchellh.ghostty"}}},
    };
}

/// Those of ours that do not depend on where the tests run.
Headers headersOf(const CapturedRequest &request) {
    Headers headers = request.headers;
    std::erase_if(headers, [](const auto &header) {
        return !header.first.starts_with("x-") || header.first == "x-tty";
    });
    return headers;
}

using Way = std::tuple<std::vector<std::string>, Carrier>;

class EveryShell : public testing::TestWithParam<Way> {};

TEST_P(EveryShell, TellsTheTerminalFromItsEnvironment) {
    CapturingListener listener(response("200 OK", ""));
    const auto &[shell, carrier] = GetParam();
    HookProcess hook(carrier, listener.port(), shell);
    for (const TerminalCase &terminal : terminalCases()) {
        SCOPED_TRACE(terminal.name);
        hook.setEnvironment(terminal.environment);
        const HookResult result = hook.run({"claude", "Stop\r\nx-evil: 1"});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output + result.errors, "");
        const auto request = listener.take();
        ASSERT_TRUE(request);
        Headers expected = terminal.headers;
        expected["x-morvane-token"] = HookProcess::token();
        expected["x-morvane-agent"] = "claude";
        expected["x-hook-event"] = "Stopx-evil: 1";
        EXPECT_EQ(headersOf(*request), expected);
        EXPECT_EQ(request->requestLine, "POST /event HTTP/1.1");
    }
}

INSTANTIATE_TEST_SUITE_P(, EveryShell,
                         testing::Combine(testing::ValuesIn(HookProcess::shells()),
                                          testing::Values(Carrier::Client, Carrier::Curl)));

// Agents cut their hooks off from the terminal, and a program's name may look like the fields
// behind it.
TEST(Terminal, IsThatOfAnAncestorOutsideTheHooksSession) {
    for (const Carrier carrier : {Carrier::Client, Carrier::Curl}) {
        CapturingListener listener(response("200 OK", ""));
        const HookProcess hook(carrier, listener.port());
        const std::string agent = hook.folder() / "x) S 1 (y";
        std::filesystem::copy_file("/bin/sh", agent);
        const std::string command =
            "setsid /bin/sh '" + hook.script().string() + "' claude Stop </dev/null; :";

        int terminal = -1;
        std::array<char, 64> device{};
        const pid_t child = forkpty(&terminal, device.data(), nullptr, nullptr);
        if (child == 0) {
            execl(agent.c_str(), agent.c_str(), "-c", command.c_str(), nullptr);
            _exit(1);
        }
        const auto request = listener.take();
        ASSERT_TRUE(request);
        EXPECT_EQ(request->headers.at("x-tty"), device.data());
        waitpid(child, nullptr, 0);
        close(terminal);
    }
}

} // namespace

} // namespace morvane::tests
