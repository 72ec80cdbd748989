#include "Core/Navigation/JumpService.h"

#include "Core/Navigation/HostApp.h"
#include "Core/Navigation/PaneFocus.h"
#include "Core/Sessions/CompletedRecord.h"
#include "Core/Sessions/Session.h"
#include "Platform/HostWindows.h"
#include "Platform/Scripting.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace morvane::JumpService {

namespace {

/// What is left of a jump once the multiplexer has selected its pane.
struct Arrival {
    QString bundleID;
    QString projectName;
    PaneLocator pane;
    std::optional<QString> tty; ///< that a window shows
};

/// When the device of a terminal was made, which nothing that goes on in it changes.
Date openedAt(const std::optional<QString> &tty) {
    const QDateTime time = QFileInfo(tty.value_or(QString())).metadataChangeTime();
    return Date(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
}

void launchOrRaise(const Arrival &arrival, HostWindows &windows) {
    windows.find(arrival.bundleID, [arrival, &windows](const std::optional<RunningHost> &host) {
        if (!host) {
            windows.launch(arrival.bundleID);
            return;
        }
        // First, so that the program comes forward with the right window on top.
        if (const auto window = windowOf(arrival.projectName, host->windows)) {
            windows.raise(*window);
        }
        windows.activate(*host);
    });
}

/// A terminal that knows which of its windows is meant needs no guess by the titles.
void bringForward(const Arrival &arrival, HostWindows &windows) {
    if (!arrival.tty) {
        launchOrRaise(arrival, windows);
        return;
    }
    windows.showTerminal(*arrival.tty, [arrival, &windows](bool shown) {
        if (!shown) {
            launchOrRaise(arrival, windows);
        }
    });
}

void take(const ITermSession &session, const Arrival &arrival, const Means &means) {
    means.scripting.run(itermScript(session.uuid),
                        [arrival, &windows = means.windows](const std::optional<QString> &result) {
                            if (result != QStringLiteral("found")) {
                                bringForward(arrival, windows);
                            }
                        });
}

/// The script doesn't activate the program.
void take(const TerminalTab &tab, const Arrival &arrival, const Means &means) {
    means.scripting.run(terminalScript(tab.tty),
                        [arrival, &windows = means.windows](const std::optional<QString> &) {
                            bringForward(arrival, windows);
                        });
}

void take(const TerminalPane &, const Arrival &arrival, const Means &means) {
    PaneFocus::focusTerminal(arrival.pane, means.tools);
    bringForward(arrival, means.windows);
}

} // namespace

Destination Destination::of(const Session &session) {
    return {session.itermSessionID,       session.termProgram, session.hostBundleID,
            Session::nameOf(session.cwd), session.pane,        session.ttyName,
            session.lastEventAt};
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

std::optional<QString> shownTty(const Destination &destination,
                                const std::optional<QString> &client, Date openedAt) {
    if (destination.pane.tmux) {
        return client;
    }
    const bool isTold = destination.ttyName && !destination.ttyName->isEmpty();
    return isTold && openedAt <= destination.toldAt ? destination.ttyName : std::nullopt;
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
    const auto arrive = [destination, means](const std::optional<QString> &client) {
        const Arrival arrival{HostApp::bundleID(destination.hostBundleID, destination.termProgram),
                              destination.projectName, destination.pane,
                              shownTty(destination, client, openedAt(destination.ttyName))};
        std::visit([&](const auto &step) { take(step, arrival, means); }, firstStep(destination));
    };
    if (PaneFocus::hasTmuxPane(destination.pane, means.processes)) {
        PaneFocus::focusMultiplexer(destination.pane, means.tools, arrive);
    } else {
        arrive(std::nullopt);
    }
}

} // namespace morvane::JumpService
