#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QObject>

#include <cstdint>

namespace morvane {

class X11Connection;

/// The windows that the window manager tells of. Owned by the application; the connection must
/// outlive it.
class X11WindowSystem : public WindowSystem {
public:
    explicit X11WindowSystem(X11Connection &x11) : m_x11(x11) {}

    /// The id of a window is its number.
    void list(Listed listed) override;
    void activate(const QString &id) override;
    void prepareLaunch(std::function<void(const QString &startupID)> prepared) override;

private:
    QList<Window> windows() const;
    void bringForward(std::uint32_t window, std::uint32_t time) const;
    void send(std::uint32_t window, const char *message, const QList<std::uint32_t> &items) const;
    void withTime(std::function<void(std::uint32_t)> action);

    X11Connection &m_x11;
    int m_launches = 0;
    QObject m_context; ///< with it go the answers that are still to come
};

} // namespace morvane
