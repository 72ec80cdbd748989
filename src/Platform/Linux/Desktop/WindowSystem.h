#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace morvane {

/// The windows of all programs, on one kind of desktop. Best effort; main thread. No call waits for
/// another program, and an answer comes once, after the call has returned, unless this object is
/// gone by then.
class WindowSystem {
public:
    /// The most that is read of another program's window title, in characters.
    static constexpr qsizetype longestTitle = 1024;

    struct Window {
        QString id; ///< valid as long as the window exists
        QString title;
        /// The names that its program gives itself here, such as the two of WM_CLASS.
        QStringList names;
        qint64 process = 0; ///< the window's; 0 if it isn't known
    };

    WindowSystem() = default;
    WindowSystem(const WindowSystem &) = delete;
    WindowSystem &operator=(const WindowSystem &) = delete;
    virtual ~WindowSystem() = default;

    /// True when the desktop lets this program give the focus to another program's window.
    virtual bool canFocusWindows() const { return true; }

    struct Listing {
        QList<Window> windows;
        bool isWhole = false; ///< if false, there may be others that the desktop doesn't report
    };
    using Listed = std::function<void(const Listing &)>;

    /// The windows of all desktops, minimised ones too, from the front to the back.
    virtual void list(Listed listed) = 0;

    /// Brings the window to the front with the keyboard: from another desktop, and when it is
    /// minimised.
    virtual void activate(const QString &id) = 0;

    /// Gets a startup id for the environment of a program about to be started, by which the desktop
    /// sees that a person waits for it; empty where there is no such thing. The answer may come
    /// before the call returns.
    virtual void prepareLaunch(const std::function<void(const QString &startupID)> &prepared) {
        prepared({});
    }
};

} // namespace morvane
