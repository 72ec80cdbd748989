#pragma once

#include "Platform/Linux/Desktop/FullscreenWindows.h"
#include "Platform/Linux/Wayland/KWinScripts.h"

namespace morvane {

/// The full-screen windows of KWin on Wayland, native and XWayland's, that no other window
/// overlaps. A script of ours reports them when they change.
class KWinFullscreenWindows : public FullscreenWindows {
    Q_OBJECT

public:
    KWinFullscreenWindows(const QDBusConnection &bus, Scheduler &scheduler)
        : m_scripts(bus, QStringLiteral("/FullscreenWindows"), scheduler) {}

    void follow() override;

private:
    void take(const QString &told);

    KWinScripts m_scripts;
    bool m_isFollowing = false;
};

} // namespace morvane
