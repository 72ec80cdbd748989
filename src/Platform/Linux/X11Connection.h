#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>

#include <cstdint>
#include <memory>

class QSocketNotifier;
struct xcb_connection_t;

namespace morvane {

/// A connection of our own to the X server, for what Qt has no public name for: other programs'
/// windows, and what the window manager tells on the root window. Owned by the application, which
/// makes it once; main thread.
class X11Connection : public QObject {
    Q_OBJECT

public:
    /// None when no X server can be reached.
    static std::unique_ptr<X11Connection> open();

    /// True when one can be. Needs no application object, unlike `open`.
    static bool isReachable();
    ~X11Connection() override;

    xcb_connection_t *connection() const { return m_connection.get(); }
    std::uint32_t root() const { return m_root; }
    std::uint32_t atom(const QByteArray &name);

    /// The 32-bit items of a property; empty when the window is gone or has none of that type.
    QList<std::uint32_t> property(std::uint32_t window, const QByteArray &name, std::uint32_t type);

    /// True while a compositing manager runs on our screen.
    bool isComposited() const { return m_composited; }

signals:
    /// A property of the root window has changed.
    void rootPropertyChanged(std::uint32_t atom);
    void compositedChanged();
    /// A generic event has come, of the extension with this opcode.
    void extensionEvent(std::uint8_t extension, std::uint16_t type);

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const;
    };
    using Handle = std::unique_ptr<xcb_connection_t, Disconnect>;

    X11Connection(Handle connection, int screen);
    void watchRoot();
    void watchCompositor(int screen);
    void readEvents();
    void readComposited();

    Handle m_connection;
    QSocketNotifier *m_notifier = nullptr;
    std::uint32_t m_root = 0;
    std::uint32_t m_compositorSelection = 0;
    std::uint8_t m_selectionEvent = 0;
    bool m_composited = false;
    QHash<QByteArray, std::uint32_t> m_atoms;
};

} // namespace morvane
