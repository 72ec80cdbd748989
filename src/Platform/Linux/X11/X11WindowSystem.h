#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"
#include "Platform/Task.h"

#include <QObject>

#include <cstdint>

namespace morvane {

class Scheduler;
class X11Connection;

/// The windows that the window manager lists; on a Wayland desktop only those of XWayland. Owned by
/// the application; the connection and the scheduler must outlive it.
class X11WindowSystem : public WindowSystem {
public:
    X11WindowSystem(X11Connection &x11, Scheduler &scheduler);

    bool canFocusWindows() const override;
    /// The id of a window is its number.
    void list(Listed listed) override;
    void activate(const QString &id) override;
    void prepareLaunch(const std::function<void(const QString &startupID)> &prepared) override;

private:
    QList<Window> windows() const;
    void goTo(std::uint32_t window, std::uint32_t time);
    void bringForward();
    std::uint32_t desktopOf(std::uint32_t window, const QByteArray &property) const;
    void send(std::uint32_t window, const QByteArray &message,
              const QList<std::uint32_t> &items) const;
    void withTime(std::function<void(std::uint32_t)> action);

    X11Connection &m_x11;
    Scheduler &m_scheduler;
    std::uint32_t m_window = 0; ///< the one on its way to the front, or 0
    std::uint32_t m_time = 0;   ///< of the person's request
    Task m_arrival;             ///< ends the wait for a desktop change that is never reported
    int m_launches = 0;
    QObject m_context; ///< its destruction drops pending answers
};

} // namespace morvane
