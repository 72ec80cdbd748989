#pragma once

#include "Platform/Linux/Wayland/FollowedFullscreenWindows.h"

namespace morvane {

/// Those of Hyprland, native ones and XWayland's, on the workspaces that its displays show.
class HyprlandFullscreenWindows : public FollowedFullscreenWindows {
    Q_OBJECT

public:
    /// Takes the path of the socket that answers questions; that of the events lies beside it.
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
