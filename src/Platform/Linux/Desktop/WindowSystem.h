#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace morvane {

/// The windows of all programs, in the way of one kind of desktop. Best effort; main thread. No
/// call waits for another program, and an answer comes once, at the earliest when the call has
/// returned, unless this object has gone by then.
class WindowSystem {
public:
    /// Of the title that another program gives its window, as far as it is read; in characters.
    static constexpr qsizetype longestTitle = 1024;

    struct Window {
        QString id; ///< good for as long as the window is there
        QString title;
        /// What its program calls itself here, such as the two names of WM_CLASS.
        QStringList names;
        qint64 process = 0; ///< that has the window; 0 where it isn't known
    };

    WindowSystem() = default;
    WindowSystem(const WindowSystem &) = delete;
    WindowSystem &operator=(const WindowSystem &) = delete;
    virtual ~WindowSystem() = default;

    /// True when the desktop lets this program give the focus to another program's window.
    virtual bool canFocusWindows() const { return true; }

    struct Listing {
        QList<Window> windows;
        bool isWhole = false; ///< else there may be others, of which the desktop doesn't tell
    };
    using Listed = std::function<void(const Listing &)>;

    /// The windows of all desktops, minimised ones too, from the front to the back.
    virtual void list(Listed listed) = 0;

    /// Brings the window to the front with the keyboard: from another desktop, and when it is
    /// minimised.
    virtual void activate(const QString &id) = 0;

    /// Tells what shows the desktop that a program which is about to be started is one that a
    /// person waits for, for its environment; empty where there is no such thing. The answer may
    /// come before the call returns.
    virtual void prepareLaunch(const std::function<void(const QString &startupID)> &prepared) {
        prepared({});
    }
};

} // namespace morvane
