#pragma once

#include "Platform/Processes.h"
#include "Platform/Time.h"

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

/// A terminal, and what tells it from another whose device is called the same.
struct TerminalDevice {
    QString path;                                ///< such as "/dev/pts/3"
    Date knownAt;                                ///< one that was opened later isn't meant
    std::optional<ProcessIdentity> process = {}; ///< which runs in it, maybe in a container
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

    /// True when the desktop lets this program give the focus to another program's window.
    virtual bool canFocusWindows() const = 0;

    using Found = std::function<void(const std::optional<QList<HostWindow>> &)>;

    /// What has become of a terminal that was to be shown.
    enum class Showing {
        shown,
        amongSeveral, ///< a program has it that has windows here, and nobody tells which of them
        unknown,      ///< nobody tells what has it
        elsewhere,    ///< its login came over the network, so no window here has it
    };
    using Shown = std::function<void(Showing)>;

    /// The windows of the application with this bundle identifier, in the desktop's order; an empty
    /// list when it has none, and no list when it may have some that the desktop doesn't tell.
    virtual void find(const QString &bundleID, Found found) = 0;

    /// Brings the window to the front; from another desktop as well.
    virtual void activate(const HostWindow &window) = 0;

    /// Starts an application that is installed; nothing for one that isn't.
    virtual void launch(const QString &bundleID) = 0;

    /// Brings the window, and the tab in it, to the front that shows this terminal, where it can be
    /// told which one that is.
    virtual void showTerminal(const TerminalDevice &terminal, Shown shown) = 0;
};

} // namespace morvane
