#pragma once

#include "Platform/Linux/Wayland/FollowedFullscreenWindows.h"

namespace morvane {

/// Those of sway, native ones and XWayland's, as its tree has them.
class SwayFullscreenWindows : public FollowedFullscreenWindows {
    Q_OBJECT

public:
    /// Takes the path of sway's socket.
    SwayFullscreenWindows(const QString &socket, Scheduler &scheduler)
        : FollowedFullscreenWindows(socket, scheduler), m_socket(socket), m_scheduler(scheduler) {}

protected:
    void begin(CompositorSocket &events) override;
    std::optional<bool> take(QByteArray &heard) override;
    void ask(const Told &told) override;

private:
    const QString m_socket;
    Scheduler &m_scheduler;
};

} // namespace morvane
