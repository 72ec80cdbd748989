#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"
#include "Platform/Linux/Wayland/KWinScripts.h"

namespace morvane {

/// The windows of KWin on Wayland, listed and activated by scripts.
class KWinWindowSystem : public WindowSystem {
public:
    KWinWindowSystem(const QDBusConnection &bus, Scheduler &scheduler)
        : m_scripts(bus, QStringLiteral("/Windows"), scheduler) {}

    void list(Listed listed) override;
    void activate(const QString &id) override;

private:
    KWinScripts m_scripts;
};

} // namespace morvane
