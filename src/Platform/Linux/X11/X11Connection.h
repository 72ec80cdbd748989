#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSize>

#include <cstdint>
#include <memory>

class QSocketNotifier;
struct xcb_connection_t;
struct xcb_key_press_event_t;

namespace morvane {

/// Our own connection to the X server, for what Qt has no public API for: other programs' windows,
/// and the window manager's properties on the root window. Owned by the application, which makes it
/// once; main thread.
class X11Connection : public QObject {
    Q_OBJECT

public:
    /// None when no X server can be reached.
    static std::unique_ptr<X11Connection> open();

    /// True if an X server can be reached. Needs no application object, unlike `open`.
    static bool isReachable();
    ~X11Connection() override;

    xcb_connection_t *connection() const { return m_connection.get(); }
    std::uint32_t root() const { return m_root; }
    QSize rootSize() const;
    std::uint32_t atom(const QByteArray &name);

    /// The 32-bit items of a property; empty when the window is gone or has none of that type.
    QList<std::uint32_t> property(std::uint32_t window, const QByteArray &name, std::uint32_t type);

    /// From now on emits signals when the window's properties change, and when it is moved, shown,
    /// hidden or closed.
    void watchWindow(std::uint32_t window);
    void stopWatching(std::uint32_t window);

    /// The child of the root window that the pointer is over; none over the bare ground.
    std::uint32_t windowUnderPointer() const;

    /// Whether to emit `pressed` for the buttons of all mice, wherever they are pressed.
    void watchPresses(bool watch);

    /// Whether to emit `moved` for the motion of all mice, which may be a thousand times a second.
    void watchMotion(bool watch);

    /// Asks for the server's current time, by which window managers tell a person's current request
    /// from a late one.
    void askTime();

    /// True while a compositing manager runs on our screen.
    bool isComposited() const { return m_composited; }

    /// True if the server is itself a client of a Wayland desktop, which alone assigns the
    /// keyboard.
    bool isXwayland() const { return m_isXwayland; }

signals:
    /// A property of the root window has changed.
    void rootPropertyChanged(std::uint32_t atom);
    /// A property of a watched window has changed.
    void windowPropertyChanged(std::uint32_t window, std::uint32_t atom);
    /// A watched window has been moved, shown, hidden or closed.
    void windowStructureChanged(std::uint32_t window);
    /// Top-level windows have been shown, hidden, closed or reparented, including those that the
    /// window manager doesn't know.
    void topLevelsChanged();
    void compositedChanged();
    /// The time that `askTime` asked for, in the server's milliseconds.
    void timeTold(std::uint32_t time);
    /// A mouse button has gone down somewhere on the screen, even where another program sees it.
    void pressed(std::uint32_t button);
    /// A mouse has moved.
    void moved();
    /// A key that has been grabbed on this connection has gone down, with this state of the
    /// modifiers and the buttons. Emitted once, however long it is held.
    void keyPressed(std::uint8_t keyCode, std::uint32_t state);
    /// The meaning of the keys or of the modifiers has changed.
    void keyboardChanged();

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const;
    };
    using Handle = std::unique_ptr<xcb_connection_t, Disconnect>;

    X11Connection(Handle connection, int screen);
    bool findXwayland();
    void watchCompositor(int screen);
    void findInputExtension();
    void readPropertyChange(std::uint32_t window, std::uint32_t atom, std::uint32_t time);
    void selectInput(std::uint16_t devices, std::uint32_t mask);
    void readEvents();
    void readInputEvent(std::uint16_t type, std::uint32_t detail);
    void readKeyEvent(const xcb_key_press_event_t &event);
    void readComposited();

    Handle m_connection;
    QSocketNotifier *m_notifier = nullptr;
    std::uint32_t m_root = 0;
    std::uint32_t m_compositorSelection = 0;
    std::uint8_t m_selectionEvent = 0;
    std::uint8_t m_inputExtension = 0; ///< its opcode, 0 where it is missing or too old
    std::uint32_t m_lastRelease = 0;   ///< when a key was last released, in the server's time
    std::uint8_t m_releasedKey = 0;    ///< the key of that release
    bool m_composited = false;
    bool m_isXwayland = false;
    QHash<QByteArray, std::uint32_t> m_atoms;
};

} // namespace morvane
