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
    QString id; ///< chosen by the desktop, valid as long as the window exists
    QString title;
};

/// A terminal, and what tells it apart from another with the same device name.
struct TerminalDevice {
    QString path;                                ///< such as "/dev/pts/3"
    Date knownAt;                                ///< a terminal opened later is another one
    std::optional<ProcessIdentity> process = {}; ///< runs in it, maybe in a container
};

/// Finds the windows of programs that host sessions, and brings them to the front. Best effort: a
/// call does nothing where the desktop doesn't support it. Main thread; no call waits for another
/// program. Each answer comes once, on the main thread, after the call has returned, unless this
/// object is gone by then.
class HostWindows {
public:
    HostWindows() = default;
    HostWindows(const HostWindows &) = delete;
    HostWindows &operator=(const HostWindows &) = delete;
    virtual ~HostWindows() = default;

    /// True when the desktop lets this program give the focus to another program's window.
    virtual bool canFocusWindows() const = 0;

    using Found = std::function<void(const std::optional<QList<HostWindow>> &)>;

    /// The outcome of `showTerminal`.
    enum class Showing {
        shown,
        amongSeveral, ///< its program has windows here, but it isn't known which one shows it
        unknown,      ///< no program is known to have it
        elsewhere,    ///< its login came over the network, so no window here has it
    };
    using Shown = std::function<void(Showing)>;

    /// The windows of the application with this bundle identifier, in the desktop's order; an empty
    /// list when it has none, and no list when it may have some that the desktop doesn't report.
    virtual void find(const QString &bundleID, Found found) = 0;

    /// Brings the window to the front, even from another desktop.
    virtual void activate(const HostWindow &window) = 0;

    /// Starts an application that is installed; nothing for one that isn't.
    virtual void launch(const QString &bundleID) = 0;

    /// Brings the window that shows this terminal, and the tab in it, to the front if they can be
    /// found.
    virtual void showTerminal(const TerminalDevice &terminal, Shown shown) = 0;
};

} // namespace morvane
