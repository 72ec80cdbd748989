#pragma once

#include "Forwarder/TerminalNames.h"

#include <string>
#include <vector>

namespace morvane::tests {

/// An environment, and the sorted headers that describe a terminal with it.
struct TerminalCase {
    const char *name;
    std::vector<std::string> environment;
    std::vector<std::string> headers;
};

/// Cases that every sender must treat alike, whether it is the client, the script or the plugin.
inline std::vector<TerminalCase> terminalCases() {
    const std::string cursor = "x-host-bundle: com.todesktop.230313mzl4w4u92";
    return {
        {"nothing known", {}, {}},
        {"an older tmux inside WezTerm",
         {"TERM_PROGRAM=WezTerm", "TERM=screen", "WEZTERM_PANE=4", "WEZTERM_UNIX_SOCKET=/run/w",
          "TMUX=/t/d,7,0", "TMUX_PANE=%3"},
         {"x-host-bundle: com.github.wez.wezterm", "x-morvane-wezterm-socket: /run/w",
          "x-term-program: WezTerm", "x-tmux-pane: %3", "x-tmux-server: /t/d,7,0",
          "x-wezterm-pane: 4"}},
        {"tmux that passes on the terminal's own TERM",
         {"TERM_PROGRAM=tmux", "TERM=xterm-kitty", "TMUX=/t/d,7,0"},
         {"x-host-bundle: net.kovidgoyal.kitty", "x-term-program: kitty",
          "x-tmux-server: /t/d,7,0"}},
        {"kitty started from tmux inside WezTerm",
         {"TERM=xterm-kitty", "KITTY_WINDOW_ID=12", "KITTY_LISTEN_ON=unix:@kitty\n-1",
          "TERM_PROGRAM=WezTerm", "WEZTERM_PANE=4", "WEZTERM_UNIX_SOCKET=/run/w", "TMUX=/t/d,7,0",
          "TMUX_PANE=%3"},
         {"x-host-bundle: net.kovidgoyal.kitty", "x-kitty-window: 12",
          "x-morvane-kitty-listen-on: unix:@kitty-1", "x-term-program: kitty"}},
        {"VS Code started from tmux inside kitty",
         {"TERM=xterm-256color", "TERM_PROGRAM=vscode", "KITTY_WINDOW_ID=12", "TMUX=/t/d,7,0",
          "TMUX_PANE=%3", "GIO_LAUNCHED_DESKTOP_FILE=/usr/share/applications/kitty.desktop"},
         {"x-host-bundle: com.microsoft.VSCode", "x-term-program: vscode"}},
        {"a JetBrains IDE by its folder, started from tmux inside WezTerm",
         {"TERMINAL_EMULATOR=JetBrains-JediTerm", "TERM=xterm-256color", "TERM_PROGRAM=WezTerm",
          "WEZTERM_PANE=4", "TMUX=/t/d,7,0", "TMUX_PANE=%3",
          "__INTELLIJ_COMMAND_HISTFILE__=/h/.cache/JetBrains/IdeaIC2024.1/history"},
         {"x-host-bundle: com.jetbrains.intellij", "x-term-program: JetBrains-JediTerm"}},
        {"another one by its folder",
         {"TERMINAL_EMULATOR=JetBrains-JediTerm",
          "__INTELLIJ_COMMAND_HISTFILE__=/h/.cache/JetBrains/WebStorm2024.1/history"},
         {"x-host-bundle: com.jetbrains.WebStorm", "x-term-program: JetBrains-JediTerm"}},
        {"an IDE that nobody has heard of",
         {"TERMINAL_EMULATOR=JetBrains", "GIO_LAUNCHED_DESKTOP_FILE=/a/jetbrains-new.desktop"},
         {"x-host-bundle: jetbrains-new", "x-term-program: JetBrains"}},
        {"tmux inside xterm, which the desktop's menu has started",
         {"TERM=screen", "XTERM_VERSION=XTerm(379)", "TMUX=/t/d,7,0", "TMUX_PANE=%3",
          "GIO_LAUNCHED_DESKTOP_FILE=/usr/share/applications/debian-xterm.desktop"},
         {"x-host-bundle: XTerm", "x-term-program: xterm", "x-tmux-pane: %3",
          "x-tmux-server: /t/d,7,0"}},
        {"Konsole started from xterm",
         {"TERM=xterm-256color", "XTERM_VERSION=XTerm(379)", "KONSOLE_VERSION=230802"},
         {"x-host-bundle: org.kde.konsole", "x-term-program: konsole"}},
        {"foot, started from a JetBrains IDE",
         {"TERMINAL_EMULATOR=JetBrains-JediTerm", "TERM=foot-extra", "TERM_PROGRAM=tmux"},
         {"x-host-bundle: foot", "x-term-program: foot"}},
        {"Cursor by its place",
         {"TERM_PROGRAM=vscode", "VSCODE_GIT_ASKPASS_NODE=/usr/share/cursor/cursor"},
         {cursor, "x-term-program: vscode"}},
        {"Orca under another name",
         {"TERM_PROGRAM=vscode", "ORCA_TERM_PROGRAM=Orca", "ORCA_TERMINAL_HANDLE=term_1"},
         {"x-host-bundle: com.stablyai.orca", "x-orca-terminal: term_1", "x-term-program: Orca"}},
        {"VSCodium by its place, started from Ghostty",
         {"TERM_PROGRAM=vscode", "VSCODE_GIT_ASKPASS_NODE=/usr/share/codium/codium",
          "GHOSTTY_RESOURCES_DIR=/usr/share/ghostty"},
         {"x-host-bundle: codium", "x-term-program: vscode"}},
        {"another application by its entry",
         {"GIO_LAUNCHED_DESKTOP_FILE=/usr/share/applications/org.gnome.Console.desktop"},
         {"x-host-bundle: org.gnome.Console"}},
        {"line breaks in a variable",
         {"ZELLIJ_SESSION_NAME=großer a\r\nx-morvane-decision: 1\n\nb"},
         {"x-zellij-session: großer ax-morvane-decision: 1b"}},
        {"texts without an end",
         {"TERM_PROGRAM=" + std::string(100'000, '\1'), "TMUX=" + std::string(1025, 't'),
          "GIO_LAUNCHED_DESKTOP_FILE=" + std::string(100'000, '/') + "kitty",
          "ZELLIJ_SESSION_NAME=main", "KITTY_WINDOW_ID=" + std::string(100'000, '\xff')},
         {"x-zellij-session: main"}},
        {"a shell that shall report and refuse, of another locale and separator",
         {"SHELLOPTS=nounset:xtrace:errexit", "BASH_XTRACEFD=1", "LC_ALL=C.UTF-8", "IFS=x-",
          "TERM=alacritty"},
         {"x-host-bundle: io.alacritty", "x-term-program: alacritty"}}};
}

/// A variable, and the header that a sender derives from it alone.
struct NameCase {
    std::string variable;
    std::string header;
    std::string value;
};

/// All names that the client knows; every other sender has to know them too.
inline std::vector<NameCase> nameCases() {
    std::vector<NameCase> cases;
    for (const auto &[variable, program] : inheritedVariables) {
        cases.push_back({std::string(variable) + "=1", "x-term-program", std::string(program)});
    }
    for (const auto &[program, host] : hostsOfPrograms) {
        cases.push_back(
            {"TERM_PROGRAM=" + std::string(program), "x-host-bundle", std::string(host)});
    }
    for (const auto &[entry, host] : hostsOfEntries) {
        cases.push_back({"GIO_LAUNCHED_DESKTOP_FILE=/a/" + std::string(entry) + ".desktop",
                         "x-host-bundle", std::string(host)});
    }
    return cases;
}

} // namespace morvane::tests
