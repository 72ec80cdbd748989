#pragma once

#include <string_view>

namespace morvane {

/// What an environment says of a terminal, and what that stands for. hook.sh and the OpenCode
/// plugin hold the same names.
struct TerminalNames {
    std::string_view from;
    std::string_view to;
};

inline constexpr std::string_view cursorBundle = "com.todesktop.230313mzl4w4u92";

/// The variable that each terminal leaves for its children, and its name; the most trusted first.
inline constexpr TerminalNames inheritedVariables[] = {{"ORCA_TERMINAL_HANDLE", "Orca"},
                                                       {"VSCODE_GIT_IPC_HANDLE", "vscode"},
                                                       {"KITTY_WINDOW_ID", "kitty"},
                                                       {"WEZTERM_PANE", "WezTerm"},
                                                       {"ALACRITTY_WINDOW_ID", "alacritty"},
                                                       {"GHOSTTY_RESOURCES_DIR", "ghostty"},
                                                       {"ITERM_SESSION_ID", "iTerm.app"},
                                                       {"KONSOLE_VERSION", "konsole"},
                                                       {"GNOME_TERMINAL_SCREEN", "gnome-terminal"},
                                                       {"XTERM_VERSION", "xterm"}};

/// The application behind each name of a terminal.
inline constexpr TerminalNames hostsOfPrograms[] = {{"Apple_Terminal", "com.apple.Terminal"},
                                                    {"iTerm.app", "com.googlecode.iterm2"},
                                                    {"ghostty", "com.mitchellh.ghostty"},
                                                    {"kitty", "net.kovidgoyal.kitty"},
                                                    {"alacritty", "io.alacritty"},
                                                    {"Alacritty", "io.alacritty"},
                                                    {"WezTerm", "com.github.wez.wezterm"},
                                                    {"WarpTerminal", "dev.warp.Warp-Stable"},
                                                    {"Orca", "com.stablyai.orca"},
                                                    {"konsole", "org.kde.konsole"},
                                                    {"gnome-terminal", "org.gnome.Terminal"},
                                                    {"foot", "foot"},
                                                    {"xterm", "XTerm"}};

/// The application behind a desktop entry that isn't named after it.
inline constexpr TerminalNames hostsOfEntries[] = {
    {"kitty", "net.kovidgoyal.kitty"},
    {"alacritty", "io.alacritty"},
    {"Alacritty", "io.alacritty"},
    {"org.wezfurlong.wezterm", "com.github.wez.wezterm"},
    {"dev.warp.Warp", "dev.warp.Warp-Stable"},
    {"code", "com.microsoft.VSCode"},
    {"code_code", "com.microsoft.VSCode"},
    {"com.visualstudio.code", "com.microsoft.VSCode"},
    {"cursor", cursorBundle}};

} // namespace morvane
