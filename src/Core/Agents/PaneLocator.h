#pragma once

#include <QString>

#include <optional>

namespace morvane {

/// Where a session's pane lies in a terminal multiplexer, or in a terminal that has panes of its
/// own. The values are each program's own, as the forwarder reported them.
struct PaneLocator {
    std::optional<QString> tmux;       ///< pane target, such as "%3"
    std::optional<QString> tmuxServer; ///< socket path first, parts separated by commas
    std::optional<QString> wezterm;    ///< pane id
    std::optional<QString> kitty;      ///< window id
    std::optional<QString> zellij;     ///< session name
    std::optional<QString> orca;       ///< terminal handle

    /// Where a terminal accepts remote control; neither names a pane.
    std::optional<QString> kittyListenOn; ///< kitty's address, such as "unix:/tmp/kitty-12"
    std::optional<QString> weztermSocket; ///< path of the socket of WezTerm's instance

    /// True when a pane is named, or a session of zellij. A server alone names none.
    bool locatesPane() const { return tmux || wezterm || kitty || zellij || orca; }

    /// The socket's path out of `tmuxServer`.
    std::optional<QString> tmuxSocket() const;

    friend bool operator==(const PaneLocator &, const PaneLocator &) = default;
};

} // namespace morvane
