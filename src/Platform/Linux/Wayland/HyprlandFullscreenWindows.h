#pragma once

#include "Platform/Linux/Wayland/FollowedFullscreenWindows.h"

namespace morvane {

/// The full-screen windows of Hyprland, native and XWayland's, on the workspaces in view.
class HyprlandFullscreenWindows : public FollowedFullscreenWindows {
    Q_OBJECT

public:
    /// Takes the path of the query socket; the event socket lies beside it.
    HyprlandFullscreenWindows(const QString &socket, Scheduler &scheduler);

protected:
    void begin(CompositorSocket &events) override;
    std::optional<bool> take(QByteArray &heard) override;
    void ask(const Told &told) override;

private:
    const QString m_socket;
    Scheduler &m_scheduler;
};

} // namespace morvane
