#pragma once

#include "Platform/Linux/Wayland/FollowedFullscreenWindows.h"

namespace morvane {

/// The full-screen windows of sway, native and XWayland's, read from its tree.
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
