#pragma once

#include "Platform/BackgroundPool.h"
#include "Platform/Displays.h"
#include "Platform/ForegroundApplication.h"
#include "Platform/InstalledApplications.h"
#include "Platform/LoginItem.h"
#include "Platform/MotionPreference.h"
#include "Platform/OverlayWindows.h"
#include "Platform/PointerMonitor.h"
#include "Platform/Scheduler.h"
#include "Platform/StatusItemHost.h"
#include "Platform/WindowControl.h"

#include <memory>

namespace morvane {

/// What stands behind the ports in this run. Made once, in `main`, and outlives everything that
/// uses it; main thread.
struct PlatformServices {
    std::unique_ptr<Scheduler> scheduler;
    std::unique_ptr<BackgroundPool> background; ///< ends before the scheduler that it reports to
    std::unique_ptr<InstalledApplications> applications;
    std::unique_ptr<LoginItem> loginItem;

    // Of a screen; without one these are absent, and the server runs alone.

    std::shared_ptr<QObject> screenConnection; ///< what the others of a screen stand on
    std::unique_ptr<Displays> displays;
    std::unique_ptr<OverlayWindows> overlays;
    std::unique_ptr<PointerMonitor> pointer;
    std::unique_ptr<ForegroundApplication> foreground;
    std::unique_ptr<WindowControl> windows;
    std::unique_ptr<StatusItemHost> statusItemHost;
    std::unique_ptr<MotionPreference> motion;
};

} // namespace morvane
