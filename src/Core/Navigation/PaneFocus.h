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

/// Selects a session's pane by the command line of the program that has it. Best effort: what
/// isn't installed, hangs or fails is passed over. Stateless; main thread, which never waits.
namespace morvane::PaneFocus {

/// Runs a tool, with what `pane` knows of the way to its program. `finished` hears of one that
/// isn't installed before this returns.
void run(const QString &tool, const QStringList &arguments, const PaneLocator &pane, Tools &tools,
         const Tools::Finished &finished);

/// A command for the tmux server of the pane, which takes no part of it for another command.
QStringList tmuxArguments(const PaneLocator &pane, const QStringList &command);

/// True for a pane of a tmux server that can still be given commands. A server that has taken the
/// socket of the one that was reported has other panes of the same names.
bool hasTmuxPane(const PaneLocator &pane, const Processes &processes);

/// False where the process runs in a terminal that the pane's server hasn't opened, but an editor
/// or another multiplexer in the pane, from which it has the pane's name. True where nobody tells.
bool mayRunInTmuxPane(const ProcessIdentity &process, const PaneLocator &pane,
                      const Processes &processes);

/// Asks tmux for the device of the pane's terminal, and for the program in its foreground. Whatever
/// is started from a pane, another terminal too, calls itself by the pane's name; the device alone
/// tells what runs in it. `then` is always called, with nothing where tmux doesn't tell; at once
/// where there is no tmux, else within three seconds.
void look(const PaneLocator &pane, Tools &tools,
          const std::function<void(const QString &tty, const QString &program)> &then);

/// A terminal that shows what is in a tmux server.
struct Client {
    QString tty;
    std::int64_t process = 0;

    friend bool operator==(const Client &, const Client &) = default;
};

/// Selects the tmux pane, which must be named, and brings it into the server's only terminal if
/// none shows it. `then` is always called, with the terminal in which tmux shows the pane; at once
/// where there is no tmux, else within twelve seconds.
void focusMultiplexer(const PaneLocator &pane, Tools &tools,
                      const std::function<void(const std::optional<Client> &)> &then);

/// Selects the pane of a terminal that has panes of its own.
void focusTerminal(const PaneLocator &pane, Tools &tools);

} // namespace morvane::PaneFocus
