#pragma once

#include "Platform/Linux/Desktop/FullscreenWindows.h"
#include "Platform/Linux/Wayland/KWinScripts.h"

namespace morvane {

/// Those of KWin on Wayland, native ones and XWayland's, over which no other window lies. A script
/// of ours tells them when they change.
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
