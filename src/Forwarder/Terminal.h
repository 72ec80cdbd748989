#pragma once

#include "Environment.h"

#include <string_view>

namespace morvane {

/// Where a program runs, according to its environment. What is unknown is empty, and a pane that is
/// not the innermost terminal's is left out.
struct Terminal {
    std::string_view program;
    std::string_view host; ///< the application's bundle, or the name of its desktop entry
    std::string_view iterm;
    std::string_view tmuxServer;
    std::string_view tmuxPane;
    std::string_view wezterm;
    std::string_view weztermSocket;
    std::string_view kitty;
    std::string_view kittyListenOn;
    std::string_view zellij;
    std::string_view orca;
};

/// hook.sh finds out the same when it uses curl.
[[nodiscard]] Terminal terminalIn(const Environment &environment);

} // namespace morvane
