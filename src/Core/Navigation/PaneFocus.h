#pragma once

#include "Core/Agents/PaneLocator.h"
#include "Platform/Tools.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <optional>

namespace morvane {
class Processes;
struct ProcessIdentity;
} // namespace morvane

/// Selects a session's pane with the command-line tool of the program that has it. Best effort:
/// what isn't installed, hangs or fails is skipped. Stateless; main thread, which never waits.
namespace morvane::PaneFocus {

/// Runs a tool, with the address of its program from `pane` in the environment. If the tool isn't
/// installed, `finished` is called before this returns.
void run(const QString &tool, const QStringList &arguments, const PaneLocator &pane, Tools &tools,
         const Tools::Finished &finished);

/// The arguments for a command to the pane's tmux server, escaped so that it stays one command.
QStringList tmuxArguments(const PaneLocator &pane, const QStringList &command);

/// True for a pane of a tmux server that can still be given commands. A server that has taken over
/// the reported one's socket doesn't count: it has other panes of the same names.
bool hasTmuxPane(const PaneLocator &pane, const Processes &processes);

/// False if the process's terminal was opened not by the pane's server but by an editor or another
/// multiplexer in the pane, from which it has inherited the pane's name. True if that is unknown.
bool mayRunInTmuxPane(const ProcessIdentity &process, const PaneLocator &pane,
                      const Processes &processes);

/// Asks tmux for the device of the pane's terminal, and for the program in its foreground. Whatever
/// is started from a pane, even another terminal, inherits the pane's name; only the device tells
/// what runs in the pane. `then` is always called, with empty texts if tmux doesn't answer; at once
/// if there is no tmux, else within three seconds.
void look(const PaneLocator &pane, Tools &tools,
          const std::function<void(const QString &tty, const QString &program)> &then);

/// A terminal that is attached to a tmux server.
struct Client {
    QString tty;
    std::int64_t process = 0;

    friend bool operator==(const Client &, const Client &) = default;
};

/// Selects the tmux pane, which must be set. If no client shows it and the server has only one,
/// that client is switched to it. `then` is always called, with the client that shows the pane, or
/// none; at once if there is no tmux, else within twelve seconds.
void focusMultiplexer(const PaneLocator &pane, Tools &tools,
                      const std::function<void(const std::optional<Client> &)> &then);

/// Selects the pane of a terminal that has panes of its own.
void focusTerminal(const PaneLocator &pane, Tools &tools);

} // namespace morvane::PaneFocus
