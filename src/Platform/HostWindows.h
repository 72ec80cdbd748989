#pragma once

#include "Platform/Time.h"

#include <QList>
#include <QString>

#include <functional>

namespace morvane {

/// A window of another program.
struct HostWindow {
    QString id; ///< of the desktop's making, good for as long as the window is there
    QString title;
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

    using Found = std::function<void(const QList<HostWindow> &)>;
    using Shown = std::function<void(bool)>;

    /// The windows of the application with this bundle identifier, in the desktop's order; none
    /// when it doesn't run, or the desktop doesn't tell.
    virtual void find(const QString &bundleID, Found found) = 0;

    /// Brings the window to the front; from another desktop as well.
    virtual void activate(const HostWindow &window) = 0;

    /// Starts an application that is installed; nothing for one that isn't.
    virtual void launch(const QString &bundleID) = 0;

    /// Brings the window, and the tab in it, to the front that shows this terminal (a device such
    /// as "/dev/pts/3"), where a terminal can tell which one that is. One that was opened after
    /// `knownAt` has but the name of the one that is meant. `shown` hears whether it did.
    virtual void showTerminal(const QString &tty, Date knownAt, Shown shown) = 0;
};

} // namespace morvane
