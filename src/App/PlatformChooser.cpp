#include "App/PlatformChooser.h"

#include "Platform/Linux/BoundedTools.h"
#include "Platform/Linux/Desktop/AutostartEntry.h"
#include "Platform/Linux/Desktop/DesktopApplications.h"
#include "Platform/Linux/Desktop/DesktopHostWindows.h"
#include "Platform/Linux/Desktop/DesktopInstaller.h"
#include "Platform/Linux/Desktop/DesktopMotion.h"
#include "Platform/Linux/Desktop/GlobalShortcutsPortal.h"
#include "Platform/Linux/Desktop/PlayerPrograms.h"
#include "Platform/Linux/Desktop/SecretService.h"
#include "Platform/Linux/Desktop/StatusNotifierHost.h"
#include "Platform/Linux/EventLoopScheduler.h"
#include "Platform/Linux/LinuxProcesses.h"
#include "Platform/Linux/LoadedHttpsClient.h"
#include "Platform/Linux/LowPriorityPool.h"
#include "Platform/Linux/ProcessDialogue.h"
#include "Platform/Linux/WatchedProgramFile.h"
#include "Platform/Linux/Wayland/HyprlandFullscreenWindows.h"
#include "Platform/Linux/Wayland/HyprlandWindowSystem.h"
#include "Platform/Linux/Wayland/KWinFullscreenWindows.h"
#include "Platform/Linux/Wayland/KWinWindowSystem.h"
#include "Platform/Linux/Wayland/SwayFullscreenWindows.h"
#include "Platform/Linux/Wayland/SwayWindowSystem.h"
#include "Platform/Linux/X11/ActiveWindow.h"
#include "Platform/Linux/X11/ScreenDisplays.h"
#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/X11FullscreenWindows.h"
#include "Platform/Linux/X11/X11HotKeys.h"
#include "Platform/Linux/X11/X11OverlayWindows.h"
#include "Platform/Linux/X11/X11PointerMonitor.h"
#include "Platform/Linux/X11/X11WindowControl.h"
#include "Platform/Linux/X11/X11WindowSystem.h"
#include "Platform/NoScripting.h"

#include <QApplication>

namespace morvane {

namespace {

/// The bell of the display; without one there is none.
void ring() {
    if (qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr) {
        QApplication::beep();
    }
}

/// The road of its own that a Wayland desktop has to all windows. On any other only those of
/// XWayland are to be seen.
struct OwnRoad {
    QString sway;
    QString hyprland;
    bool isKWin = false;
};

OwnRoad ownRoad(const X11Connection &x11) {
    if (!x11.isXwayland()) {
        return {};
    }
    const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    return {qEnvironmentVariable("SWAYSOCK"),
            HyprlandWindowSystem::socketOf(qEnvironmentVariable("HYPRLAND_INSTANCE_SIGNATURE")),
            desktops.split(QLatin1Char(':')).contains(QLatin1String("KDE"))};
}

std::unique_ptr<WindowSystem> windowSystem(X11Connection &x11, Scheduler &scheduler) {
    const OwnRoad road = ownRoad(x11);
    if (!road.sway.isEmpty()) {
        return std::make_unique<SwayWindowSystem>(road.sway);
    }
    if (!road.hyprland.isEmpty()) {
        return std::make_unique<HyprlandWindowSystem>(road.hyprland);
    }
    if (road.isKWin) {
        return std::make_unique<KWinWindowSystem>(QDBusConnection::sessionBus());
    }
    return std::make_unique<X11WindowSystem>(x11, scheduler);
}

/// These desktops tell of XWayland's windows as well.
std::unique_ptr<FullscreenWindows> fullscreenWindows(X11Connection &x11) {
    const OwnRoad road = ownRoad(x11);
    if (!road.sway.isEmpty()) {
        return std::make_unique<SwayFullscreenWindows>(road.sway);
    }
    if (!road.hyprland.isEmpty()) {
        return std::make_unique<HyprlandFullscreenWindows>(road.hyprland);
    }
    if (road.isKWin) {
        return std::make_unique<KWinFullscreenWindows>(QDBusConnection::sessionBus());
    }
    return std::make_unique<X11FullscreenWindows>(x11);
}

} // namespace

PlatformServices choosePlatform() {
    PlatformServices platform;
    platform.scheduler = std::make_unique<EventLoopScheduler>();
    platform.secrets = std::make_unique<SecretService>(QDBusConnection::sessionBus());
    platform.dialogue = std::make_unique<ProcessDialogue>();
    platform.background = std::make_unique<LowPriorityPool>();
    platform.https = std::make_unique<LoadedHttpsClient>(LoadedHttpsClient::libraryOfProgram(),
                                                         *platform.scheduler, *platform.background);
    platform.applications = std::make_unique<DesktopApplications>();
    platform.loginItem = std::make_unique<AutostartEntry>(QCoreApplication::applicationFilePath());
    platform.installer = std::make_unique<DesktopInstaller>();
    platform.programFile =
        std::make_unique<WatchedProgramFile>(QCoreApplication::applicationFilePath());
    platform.processes = std::make_unique<LinuxProcesses>(*platform.scheduler);
    platform.sounds = std::make_unique<PlayerPrograms>(*platform.scheduler, ring);
    platform.tools = std::make_unique<BoundedTools>(*platform.scheduler);
    platform.scripting = std::make_unique<NoScripting>(*platform.scheduler);
    const auto *gui = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    const bool onX11 = gui && QGuiApplication::platformName() == QLatin1String("xcb");
    if (const std::shared_ptr<X11Connection> x11 = onX11 ? X11Connection::open() : nullptr) {
        platform.hasScreen = true;
        platform.displays = std::make_unique<ScreenDisplays>(*x11);
        platform.overlays = std::make_unique<X11OverlayWindows>(*x11, fullscreenWindows(*x11));
        platform.pointer = std::make_unique<X11PointerMonitor>(*x11, *platform.scheduler);
        if (x11->isXwayland()) {
            platform.hotKeys = std::make_unique<GlobalShortcutsPortal>(
                QDBusConnection::connectToBus(QDBusConnection::SessionBus, "hot keys"));
        } else {
            platform.hotKeys = std::make_unique<X11HotKeys>(*x11);
        }
        platform.foreground = std::make_unique<ActiveWindow>(*x11);
        platform.windows = std::make_unique<X11WindowControl>(*x11);
        platform.hostWindows = std::make_unique<DesktopHostWindows>(
            windowSystem(*x11, *platform.scheduler), QDBusConnection::sessionBus(),
            *platform.background, *platform.scheduler);
        platform.statusItemHost =
            std::make_unique<StatusNotifierHost>(QDBusConnection::sessionBus());
        platform.motion = std::make_unique<DesktopMotion>(QDBusConnection::sessionBus());
        platform.screenConnection = x11;
    }
    return platform;
}

bool hasScreen() {
    return X11Connection::isReachable();
}

} // namespace morvane
