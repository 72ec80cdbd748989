#pragma once

#include "EndToEnd/ChildProcess.h"
#include "EndToEnd/WindowManager.h"

#include <QPoint>
#include <QProcessEnvironment>
#include <QRect>
#include <QStringList>

#include <memory>
#include <optional>

namespace morvane {

/// A virtual X display with a window manager, a session bus, and functions that move the pointer
/// and press keys. It ends with this object.
class VirtualDisplay {
public:
    /// The environment is that of the person at this display, whose home gets the settings of the
    /// window manager.
    explicit VirtualDisplay(QProcessEnvironment environment,
                            const WindowManager &manager = WindowManager::openbox);

    /// The programs that it needs and that are not installed.
    static QStringList missingPrograms(const WindowManager &manager = WindowManager::openbox);

    /// False when the display, the bus or the window manager did not come up.
    bool isUp() const { return m_isUp; }

    /// What a program needs to appear here.
    const QProcessEnvironment &environment() const { return m_environment; }

    void movePointer(const QPoint &position) const;
    void click(const QPoint &position, int button = 1) const;

    /// A key by its name, such as "Escape".
    void press(const QString &key) const;

    /// Starts typing, which is done once the returned process has ended.
    std::unique_ptr<ChildProcess> type(const QString &text) const;

    /// Counted from 0; there are at least two.
    void goToDesktop(int index) const;

    /// Makes a part of the screen, which is 1280 by 800, a monitor. One monitor must be at the
    /// upper left.
    void setMonitor(const QString &name, const QRect &place) const;

    /// Runs a program to its end; true when it reports success.
    bool run(const QStringList &command) const;

    /// Waits until the window of this title has the keyboard, and activates it where the window
    /// manager hasn't focused it as a new window. False when it never gets the keyboard.
    bool bringToFront(const QString &title) const;

    /// Has xdotool act on the window of this title, and tries again until it succeeds: xdotool also
    /// fails where any other window vanishes during its search. False when it never succeeds.
    bool withWindow(const QString &title, const QStringList &action) const;

    /// The title of the window that has the keyboard.
    QByteArray focusedTitle() const;

private:
    std::unique_ptr<ChildProcess> start(const QByteArray &command) const;
    bool tryWithWindow(const QString &title, const QStringList &action) const;
    /// What xdotool prints; none when it could not do it.
    std::optional<QByteArray> control(const QStringList &arguments) const;

    QProcessEnvironment m_environment;
    const WindowManager m_manager;
    std::unique_ptr<ChildProcess> m_server;
    std::unique_ptr<ChildProcess> m_windowManager;
    std::unique_ptr<ChildProcess> m_bus;
    bool m_isUp = false;
};

} // namespace morvane
