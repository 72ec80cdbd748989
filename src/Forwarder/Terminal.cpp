#include "Terminal.h"

#include "TerminalNames.h"

#include <cstddef>

namespace morvane {

namespace {

template <size_t count>
std::string_view named(const TerminalNames (&names)[count], std::string_view name) {
    for (const TerminalNames &one : names) {
        if (one.from == name)
            return one.to;
    }
    return {};
}

std::string_view firstOf(std::string_view preferred, std::string_view other) {
    return preferred.empty() ? other : preferred;
}

/// The position behind a lower-case word in a text of any case; npos if it isn't there.
size_t endOf(std::string_view word, std::string_view text) {
    for (size_t begin = 0; begin + word.size() <= text.size(); ++begin) {
        size_t same = 0;
        while (same < word.size() && (text[begin + same] | 0x20) == word[same])
            ++same;
        if (same == word.size())
            return begin + same;
    }
    return std::string_view::npos;
}

/// The application that a desktop entry or a JetBrains folder belongs to.
std::string_view hostNamedBy(std::string_view text) {
    const std::string_view known = named(hostsOfEntries, text);
    if (!known.empty())
        return known;
    constexpr TerminalNames ides[] = {{"webstorm", "com.jetbrains.WebStorm"},
                                      {"phpstorm", "com.jetbrains.PhpStorm"},
                                      {"pycharm", "com.jetbrains.pycharm"}};
    for (const TerminalNames &ide : ides) {
        if (endOf(ide.from, text) != std::string_view::npos)
            return ide.to;
    }
    bool isIdea = text.starts_with("jetbrains-idea") ||
                  text.find("/JetBrains/Idea") != std::string_view::npos;
    if (const size_t end = endOf("intellij", text); !isIdea && end != std::string_view::npos) {
        text.remove_prefix(end);
        isIdea = endOf("idea", text) != std::string_view::npos;
    }
    return isIdea ? std::string_view{"com.jetbrains.intellij"} : std::string_view{};
}

struct Program {
    std::string_view name;
    bool isCertain = false;
};

/// The terminal from TERM, if only that one uses the name, or the emulator inside an IDE.
std::string_view certainProgram(const Environment &environment, std::string_view term) {
    if (term == "xterm-kitty")
        return "kitty";
    if (term == "xterm-ghostty")
        return "ghostty";
    if (term.starts_with("alacritty"))
        return "alacritty";
    if (term == "foot" || term.starts_with("foot-"))
        return "foot";
    const std::string_view emulator = environment.text("TERMINAL_EMULATOR");
    return emulator.starts_with("JetBrains") ? emulator : std::string_view{};
}

/// A terminal started from another one's shell inherits the other's variables, so their mere
/// presence proves nothing. What the innermost terminal has surely set itself goes first: TERM;
/// then the emulator inside an IDE, since IDEs are started from shells far more often than
/// terminals from IDEs; then TERM_PROGRAM, which most terminals set. The variables that a terminal
/// leaves for its children come last. They are needed inside tmux, which puts its own name into
/// TERM_PROGRAM, but is no application.
Program programIn(const Environment &environment, std::string_view term) {
    // Orca keeps its name here, while TERM_PROGRAM shows agents another one that they know.
    const std::string_view orca = environment.text("ORCA_TERM_PROGRAM");
    if (!orca.empty())
        return {orca, false};
    const std::string_view certain = certainProgram(environment, term);
    if (!certain.empty())
        return {certain, true};
    const std::string_view name = environment.text("TERM_PROGRAM");
    if (!name.empty() && name != "tmux")
        return {name, name == "vscode" && !term.empty()};
    for (const TerminalNames &variable : inheritedVariables) {
        if (!environment.text(variable.from).empty())
            return {variable.to, false};
    }
    return {};
}

/// Editors based on VS Code report its name, but run from a place of their own.
std::string_view editorHost(const Environment &environment, std::string_view bundle) {
    const std::string_view place = environment.text("VSCODE_GIT_ASKPASS_NODE");
    if (!environment.raw("CURSOR_TRACE_ID").empty() || place.ends_with("/cursor") ||
        place.ends_with("/Cursor") || place.find("/Cursor.app/") != std::string_view::npos)
        return cursorBundle;
    return firstOf(bundle, place.ends_with("/codium") ? "codium" : "com.microsoft.VSCode");
}

/// All IDEs have the same emulator; the folder of its history names the IDE.
std::string_view ideHost(const Environment &environment, std::string_view entry) {
    const std::string_view history = environment.text("__INTELLIJ_COMMAND_HISTFILE__");
    return firstOf(firstOf(hostNamedBy(history), hostNamedBy(entry)),
                   entry.starts_with("jetbrains-") ? entry : std::string_view{});
}

std::string_view hostOf(const Environment &environment, std::string_view program) {
    const std::string_view known = named(hostsOfPrograms, program);
    if (!known.empty())
        return known;
    const std::string_view bundle = environment.text("__CFBundleIdentifier");
    if (program == "vscode")
        return editorHost(environment, bundle);
    std::string_view entry = environment.text("GIO_LAUNCHED_DESKTOP_FILE");
    entry.remove_prefix(entry.rfind('/') + 1);
    constexpr std::string_view ending = ".desktop";
    if (entry.ends_with(ending))
        entry.remove_suffix(ending.size());
    if (program.starts_with("JetBrains"))
        return firstOf(bundle, ideHost(environment, entry));
    // The desktop entry comes last: what the desktop launched may be an ancestor of the host.
    return firstOf(bundle, firstOf(hostNamedBy(entry), entry));
}

} // namespace

Terminal terminalIn(const Environment &environment) {
    const std::string_view term = environment.text("TERM");
    const Program program = programIn(environment, term);
    Terminal terminal;
    terminal.program = program.name;
    terminal.host = hostOf(environment, program.name);

    // A pane of a terminal that is not the innermost one would be the wrong pane to go to, and to
    // type into.
    const auto own = [&](std::string_view owner, std::string_view variable) {
        return program.name.empty() || program.name == owner ? environment.text(variable)
                                                             : std::string_view{};
    };
    terminal.iterm = own("iTerm.app", "ITERM_SESSION_ID");
    terminal.wezterm = own("WezTerm", "WEZTERM_PANE");
    terminal.weztermSocket = own("WezTerm", "WEZTERM_UNIX_SOCKET");
    terminal.kitty = own("kitty", "KITTY_WINDOW_ID");
    terminal.kittyListenOn = own("kitty", "KITTY_LISTEN_ON");
    terminal.orca = own("Orca", "ORCA_TERMINAL_HANDLE");
    terminal.zellij = environment.text("ZELLIJ_SESSION_NAME");

    // tmux names itself in TERM or TERM_PROGRAM. If neither names it and the innermost terminal is
    // certain, that terminal was started from within tmux.
    if (!program.isCertain || environment.text("TERM_PROGRAM") == "tmux" ||
        term.starts_with("tmux") || term.starts_with("screen")) {
        terminal.tmuxServer = environment.text("TMUX");
        if (!terminal.tmuxServer.empty())
            terminal.tmuxPane = environment.text("TMUX_PANE");
    }
    return terminal;
}

} // namespace morvane
