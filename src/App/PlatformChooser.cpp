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
#include "Platform/Linux/X11/X11HeldKeys.h"
#include "Platform/Linux/X11/X11HotKeys.h"
#include "Platform/Linux/X11/X11OverlayWindows.h"
#include "Platform/Linux/X11/X11PointerMonitor.h"
#include "Platform/Linux/X11/X11WindowSystem.h"
#include "Platform/NullScripting.h"

#include <QApplication>
#include <QFileInfo>

#include <functional>
#include <utility>

namespace morvane {

namespace {

/// Rings the bell of the display, if there is one.
void ring() {
    if (qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr) {
        QApplication::beep();
    }
}

struct Windows {
    std::unique_ptr<WindowSystem> all;
    std::unique_ptr<FullscreenWindows> fullscreen;
};

/// Uses a known Wayland desktop's own interface to all windows, XWayland's included. On any other
/// Wayland desktop only XWayland's windows can be seen.
Windows chooseWindows(X11Connection &x11, Scheduler &scheduler) {
    if (x11.isXwayland()) {
        // The variable may come from an earlier session, whose socket is gone.
        if (const QString sway = qEnvironmentVariable("SWAYSOCK"); QFileInfo::exists(sway)) {
            return {std::make_unique<SwayWindowSystem>(sway, scheduler),
                    std::make_unique<SwayFullscreenWindows>(sway, scheduler)};
        }
        const QString hyprland =
            HyprlandWindowSystem::socketOf(qEnvironmentVariable("HYPRLAND_INSTANCE_SIGNATURE"));
        if (!hyprland.isEmpty()) {
            return {std::make_unique<HyprlandWindowSystem>(hyprland, scheduler),
                    std::make_unique<HyprlandFullscreenWindows>(hyprland, scheduler)};
        }
        if (qEnvironmentVariable("XDG_CURRENT_DESKTOP")
                .split(u':')
                .contains(QLatin1String("KDE"))) {
            const QDBusConnection bus = QDBusConnection::sessionBus();
            return {std::make_unique<KWinWindowSystem>(bus, scheduler),
                    std::make_unique<KWinFullscreenWindows>(bus, scheduler)};
        }
    }
    return {std::make_unique<X11WindowSystem>(x11, scheduler),
            std::make_unique<X11FullscreenWindows>(x11)};
}

} // namespace

PlatformServices choosePlatform(std::function<void()> endAsItIs) {
    PlatformServices platform;
    platform.scheduler = std::make_unique<EventLoopScheduler>();
    platform.secrets = std::make_unique<SecretService>(QDBusConnection::sessionBus());
    platform.dialogue = std::make_unique<ProcessDialogue>();
    platform.background = std::make_unique<LowPriorityPool>(std::move(endAsItIs));
    platform.https = std::make_unique<LoadedHttpsClient>(LoadedHttpsClient::libraryOfProgram(),
                                                         *platform.scheduler, *platform.background);
    platform.applications = std::make_unique<DesktopApplications>();
    platform.loginItem = std::make_unique<AutostartEntry>(QCoreApplication::applicationFilePath());
    platform.installer = std::make_unique<DesktopInstaller>();
    platform.programFile =
        std::make_unique<WatchedProgramFile>(QCoreApplication::applicationFilePath());
    platform.processes =
        std::make_unique<LinuxProcesses>(*platform.scheduler, *platform.background);
    platform.sounds = std::make_unique<PlayerPrograms>(*platform.scheduler, ring);
    platform.tools = std::make_unique<BoundedTools>(*platform.scheduler);
    platform.scripting = std::make_unique<NullScripting>(*platform.scheduler);
    if (const std::shared_ptr<X11Connection> x11 = isOnScreen() ? X11Connection::open() : nullptr) {
        platform.hasScreen = true;
        Windows windows = chooseWindows(*x11, *platform.scheduler);
        platform.displays = std::make_unique<ScreenDisplays>(*x11);
        platform.overlays =
            std::make_unique<X11OverlayWindows>(*x11, std::move(windows.fullscreen));
        platform.pointer = std::make_unique<X11PointerMonitor>(*x11, *platform.scheduler);
        if (x11->isXwayland()) {
            platform.hotKeys = std::make_unique<GlobalShortcutsPortal>(
                QDBusConnection::connectToBus(QDBusConnection::SessionBus, "hot keys"));
        } else {
            platform.hotKeys = std::make_unique<X11HotKeys>(*x11);
        }
        platform.foreground = std::make_unique<ActiveWindow>(*x11);
        platform.hostWindows = std::make_unique<DesktopHostWindows>(
            std::move(windows.all), QDBusConnection::sessionBus(), *platform.background,
            *platform.scheduler);
        platform.statusItemHost =
            std::make_unique<StatusNotifierHost>(QDBusConnection::sessionBus());
        platform.motion = std::make_unique<DesktopMotion>(QDBusConnection::sessionBus());
        platform.heldKeys = std::make_unique<X11HeldKeys>();
        platform.screenConnection = x11;
    }
    return platform;
}

bool hasScreen() {
    return X11Connection::isReachable();
}

bool isOnScreen() {
    const auto *gui = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    return gui && QGuiApplication::platformName() == QLatin1String("xcb");
}

} // namespace morvane
