#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace morvane {

/// A window of another program.
struct HostWindow {
    QString id; ///< of the desktop's making, good for as long as the window is there
    QString title;
};

/// A program that runs and hosts sessions.
struct RunningHost {
    QString id;                ///< of the desktop's making, good for as long as the program runs
    QList<HostWindow> windows; ///< in the desktop's order
};

/// Programs that host sessions, and their windows: what it takes to go there. Best effort: what
/// the desktop doesn't offer doesn't happen. Main thread; no call waits for another program, and
/// each answer comes once, on the main thread, at the earliest when the call has returned, unless
/// this object has gone by then.
class HostWindows {
public:
    HostWindows() = default;
    HostWindows(const HostWindows &) = delete;
    HostWindows &operator=(const HostWindows &) = delete;
    virtual ~HostWindows() = default;

    using Found = std::function<void(const std::optional<RunningHost> &)>;
    using Shown = std::function<void(bool)>;

    /// The first running application with this bundle identifier; none when there is none, or the
    /// desktop doesn't tell.
    virtual void find(const QString &bundleID, Found found) = 0;

    /// Puts the window on top of the others of its program.
    virtual void raise(const HostWindow &window) = 0;

    /// Brings the program to the front, with the window on top that it has on top; from another
    /// desktop as well.
    virtual void activate(const RunningHost &host) = 0;

    /// Starts an application that is installed; nothing for one that isn't.
    virtual void launch(const QString &bundleID) = 0;

    /// Brings the window, and the tab in it, to the front that shows this terminal (a device such
    /// as "/dev/pts/3"), where a terminal can tell which one that is. `shown` hears whether it did.
    virtual void showTerminal(const QString &tty, Shown shown) = 0;
};

} // namespace morvane
