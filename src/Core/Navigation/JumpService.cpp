#include "Core/Navigation/JumpService.h"

#include "Core/Navigation/HostApp.h"
#include "Core/Navigation/PaneFocus.h"
#include "Core/Sessions/CompletedRecord.h"
#include "Core/Sessions/Session.h"
#include "Forwarder/Terminal.h"
#include "Platform/HostWindows.h"
#include "Platform/Scripting.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <vector>

namespace morvane::JumpService {

namespace {

/// The next step, or what to do if a step can't be done.
using Then = std::function<void()>;

using Showing = HostWindows::Showing;

/// If it is unknown whether the host runs, it is left alone: most terminals that are started again
/// open an empty window, which takes the keyboard.
void launchOrRaise(const Destination &destination, HostWindows &windows) {
    const QString bundleID = HostApp::bundleID(destination.hostBundleID, destination.termProgram);
    const QString project = destination.projectName;
    windows.find(bundleID, [bundleID, project, &windows](const auto &found) {
        if (!found) {
            return;
        }
        if (found->isEmpty()) {
            windows.launch(bundleID);
        } else {
            windows.activate(windowOf(project, *found).value_or(found->first()));
        }
    });
}

void showTerminal(const Destination &destination, HostWindows &windows,
                  const HostWindows::Shown &shown) {
    if (const QString tty = destination.ttyName.value_or(QString()); !tty.isEmpty()) {
        windows.showTerminal({tty, destination.toldAt, destination.process}, shown);
    } else {
        shown(Showing::unknown);
    }
}

/// If the right window could be shown, there is no need to guess by titles, and if no window here
/// has the terminal, every guess would be wrong.
void bringForward(const Destination &destination, HostWindows &windows, const Then &otherwise) {
    showTerminal(destination, windows, [otherwise](Showing showing) {
        if (showing == Showing::unknown || showing == Showing::amongSeveral) {
            otherwise();
        }
    });
}

void perform(const ITermSession &session, const Destination &, const Means &means,
             const Then &bring) {
    means.scripting.run(itermScript(session.uuid), [bring](const std::optional<QString> &result) {
        if (result != QStringLiteral("found")) {
            bring();
        }
    });
}

/// The script doesn't activate the program.
void perform(const TerminalTab &tab, const Destination &, const Means &means, const Then &bring) {
    means.scripting.run(terminalScript(tab.tty),
                        [bring](const std::optional<QString> &) { bring(); });
}

void perform(const TerminalPane &, const Destination &destination, const Means &means,
             const Then &bring) {
    PaneFocus::focusTerminal(destination.pane, means.tools);
    bring();
}

void arrive(const Destination &destination, const Means &means, const Then &otherwise) {
    const Then bring = [destination, &windows = means.windows, otherwise] {
        bringForward(destination, windows, otherwise);
    };
    std::visit([&](const auto &step) { perform(step, destination, means, bring); },
               firstStep(destination));
}

void arriveOrGuess(const Destination &destination, const Means &means) {
    arrive(destination, means, [=] { launchOrRaise(destination, means.windows); });
}

/// The device of a tmux pane belongs to no window.
Destination withoutDevice(Destination inTmux) {
    inTmux.ttyName.reset();
    return inTmux;
}

/// Where the tmux client runs, according to its environment. What the session has reported, except
/// the pane, was inherited from whoever started the server.
Destination around(const PaneFocus::Client &client, const QString &projectName,
                   const Processes &processes) {
    QByteArrayList entries = processes.environment(client.process);
    std::vector<char *> variables;
    for (QByteArray &entry : entries) {
        variables.push_back(entry.data());
    }
    variables.push_back(nullptr);
    const Terminal terminal = terminalIn(Environment(variables.data()));
    const auto told = [](std::string_view text) {
        return text.empty() ? std::nullopt : std::optional(QString::fromUtf8(QByteArrayView(text)));
    };
    PaneLocator pane;
    pane.wezterm = told(terminal.wezterm);
    pane.weztermSocket = told(terminal.weztermSocket);
    pane.kitty = told(terminal.kitty);
    pane.kittyListenOn = told(terminal.kittyListenOn);
    pane.orca = told(terminal.orca);
    return {told(terminal.iterm),
            told(terminal.program),
            told(terminal.host),
            projectName,
            pane,
            client.tty,
            Date::max(),
            processes.identityOf(client.process)};
}

/// Inside tmux the terminal is the one of the client that shows the pane.
void goToPane(const Destination &destination, const Means &means) {
    const auto goOn = [destination, means](const std::optional<PaneFocus::Client> &client) {
        const Destination terminal = client
                                         ? around(*client, destination.projectName, means.processes)
                                         : withoutDevice(destination);
        arriveOrGuess(terminal, means);
    };
    PaneFocus::focusMultiplexer(destination.pane, means.tools, goOn);
}

/// A terminal that was started from the pane has a window of its own. One without a window lies
/// within the pane, as an editor's or another multiplexer's does, and the terminal's pane in its
/// environment was inherited from whoever started the server. So the window is shown before that
/// pane is selected, and once more afterwards, since the selection may have brought another window
/// forward.
void goToWindowOrPane(const Destination &destination, const Means &means) {
    showTerminal(destination, means.windows, [=](Showing showing) {
        if (showing == Showing::unknown) {
            goToPane(destination, means);
        } else if (showing != Showing::elsewhere) {
            arriveOrGuess(destination, means);
        }
    });
}

} // namespace

Destination Destination::of(const Session &session) {
    return {session.itermSessionID,       session.termProgram, session.hostBundleID,
            Session::nameOf(session.cwd), session.pane,        session.ttyName,
            session.lastEventAt,          session.process};
}

Destination Destination::of(const CompletedRecord &record) {
    return {record.itermSessionID,
            record.termProgram,
            record.hostBundleID,
            Session::nameOf(record.cwd),
            record.pane.value_or(PaneLocator()),
            record.ttyName,
            record.finishedAt};
}

bool Destination::isPlace() const {
    return itermSessionID || termProgram || hostBundleID || pane.locatesPane();
}

Step firstStep(const Destination &destination) {
    const QString host = HostApp::bundleID(destination.hostBundleID, destination.termProgram);
    if (host == HostApp::iterm2) {
        if (const auto uuid = HostApp::itermUUID(destination.itermSessionID)) {
            return ITermSession{*uuid};
        }
    }
    const QString tty = destination.ttyName.value_or(QString());
    if (host == u"com.apple.Terminal" && !tty.isEmpty()) {
        return TerminalTab{tty};
    }
    return TerminalPane{};
}

QStringList titleComponents(const QString &title) {
    QStringList result{title};
    for (const char *separator : {" – ", " — ", " - ", " · ", " | "}) {
        QStringList pieces;
        for (const QString &piece : std::as_const(result)) {
            pieces += piece.split(QString::fromUtf8(separator));
        }
        result = pieces;
    }
    std::ranges::transform(result, result.begin(),
                           [](const QString &piece) { return piece.trimmed(); });
    return result;
}

std::optional<HostWindow> windowOf(const QString &projectName, const QList<HostWindow> &windows) {
    const auto isExact = [&](const HostWindow &window) {
        return titleComponents(window.title).contains(projectName, Qt::CaseInsensitive);
    };
    const auto isLoose = [&](const HostWindow &window) {
        return window.title.contains(projectName, Qt::CaseInsensitive);
    };
    auto found = std::ranges::find_if(windows, isExact);
    if (found == windows.end()) {
        found = std::ranges::find_if(windows, isLoose);
    }
    return found != windows.end() ? std::optional(*found) : std::nullopt;
}

QString itermScript(const QString &uuid) {
    return QStringLiteral(R"(tell application "iTerm2"
  activate
  repeat with w in windows
    repeat with t in tabs of w
      repeat with s in sessions of t
        if (unique id of s) is "%1" then
          select w
          tell t to select
          select s
          return "found"
        end if
      end repeat
    end repeat
  end repeat
  return "not found"
end tell)")
        .arg(uuid);
}

QString terminalScript(const QString &tty) {
    return QStringLiteral(R"(tell application "Terminal"
  repeat with w in windows
    repeat with t in tabs of w
      if (tty of t) is "%1" then
        set index of w to 1
        set selected of t to true
        return "found"
      end if
    end repeat
  end repeat
  return "not found"
end tell)")
        .arg(tty);
}

void jump(const Destination &destination, const Means &means) {
    if (!PaneFocus::hasTmuxPane(destination.pane, means.processes)) {
        arriveOrGuess(destination.pane.tmux ? withoutDevice(destination) : destination, means);
        return;
    }
    PaneFocus::look(destination.pane, means.tools,
                    [destination, means](const QString &tty, auto &) {
                        if (!destination.ttyName || tty == destination.ttyName) {
                            goToPane(destination, means);
                        } else if (tty.isEmpty()) {
                            arriveOrGuess(destination, means);
                        } else {
                            goToWindowOrPane(destination, means);
                        }
                    });
}

} // namespace morvane::JumpService
