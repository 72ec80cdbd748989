#include "Core/Navigation/JumpService.h"

#include "Core/Navigation/HostApp.h"
#include "Core/Navigation/PaneFocus.h"
#include "Core/Sessions/CompletedRecord.h"
#include "Core/Sessions/Session.h"
#include "Platform/HostWindows.h"
#include "Platform/Scripting.h"

#include <algorithm>

namespace morvane::JumpService {

namespace {

/// What is left of a jump once the multiplexer has selected its pane.
struct Arrival {
    QString bundleID;
    QString projectName;
    PaneLocator pane;
    TerminalDevice terminal; ///< that a window shows; its path is empty where none is known
};

void launchOrRaise(const Arrival &arrival, HostWindows &windows) {
    windows.find(arrival.bundleID, [arrival, &windows](const QList<HostWindow> &found) {
        if (found.isEmpty()) {
            windows.launch(arrival.bundleID);
        } else {
            windows.activate(windowOf(arrival.projectName, found).value_or(found.first()));
        }
    });
}

/// A terminal that knows which of its windows is meant needs no guess by the titles, and where no
/// window here can have it each guess would be wrong.
void bringForward(const Arrival &arrival, HostWindows &windows) {
    if (arrival.terminal.path.isEmpty()) {
        launchOrRaise(arrival, windows);
        return;
    }
    windows.showTerminal(arrival.terminal, [arrival, &windows](HostWindows::Showing showing) {
        if (showing == HostWindows::Showing::unknown) {
            launchOrRaise(arrival, windows);
        }
    });
}

void perform(const ITermSession &session, const Arrival &arrival, const Means &means) {
    means.scripting.run(itermScript(session.uuid),
                        [arrival, &windows = means.windows](const std::optional<QString> &result) {
                            if (result != QStringLiteral("found")) {
                                bringForward(arrival, windows);
                            }
                        });
}

/// The script doesn't activate the program.
void perform(const TerminalTab &tab, const Arrival &arrival, const Means &means) {
    means.scripting.run(terminalScript(tab.tty),
                        [arrival, &windows = means.windows](const std::optional<QString> &) {
                            bringForward(arrival, windows);
                        });
}

void perform(const TerminalPane &, const Arrival &arrival, const Means &means) {
    PaneFocus::focusTerminal(arrival.pane, means.tools);
    bringForward(arrival, means.windows);
}

/// Inside tmux the terminal is the one of the client that shows the pane. What the session knows of
/// other panes is left from whoever started the server.
void arrive(const Destination &destination, const std::optional<PaneFocus::Client> &client,
            const Means &means) {
    Arrival arrival{HostApp::bundleID(destination.hostBundleID, destination.termProgram),
                    destination.projectName,
                    destination.pane,
                    {{}, destination.toldAt, destination.process}};
    if (client) {
        arrival.pane = PaneFocus::paneOf(*client, means.processes);
        arrival.terminal = {client->tty, Date::max(), client->process};
    } else if (!destination.pane.tmux) {
        arrival.terminal.path = destination.ttyName.value_or(QString());
    }
    std::visit([&](const auto &step) { perform(step, arrival, means); }, firstStep(destination));
}

} // namespace

Destination Destination::of(const Session &session) {
    return {session.itermSessionID, session.termProgram,
            session.hostBundleID,   Session::nameOf(session.cwd),
            session.pane,           session.ttyName,
            session.lastEventAt,    session.process ? session.process->id : 0};
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
        arrive(destination, std::nullopt, means);
        return;
    }
    PaneFocus::look(destination.pane, means.tools,
                    [destination, means](const QString &tty, auto &) {
                        if (destination.ttyName && tty != destination.ttyName) {
                            Destination elsewhere = destination;
                            elsewhere.pane.tmux.reset();
                            arrive(elsewhere, std::nullopt, means);
                            return;
                        }
                        PaneFocus::focusMultiplexer(destination.pane, means.tools,
                                                    [destination, means](const auto &client) {
                                                        arrive(destination, client, means);
                                                    });
                    });
}

} // namespace morvane::JumpService
