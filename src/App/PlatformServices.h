#pragma once

#include "Platform/BackgroundPool.h"
#include "Platform/ForegroundApplication.h"
#include "Platform/HttpsClient.h"
#include "Platform/InstalledApplications.h"
#include "Platform/LoginItem.h"
#include "Platform/NoScreen.h"
#include "Platform/PackageInstaller.h"
#include "Platform/Processes.h"
#include "Platform/ProgramFile.h"
#include "Platform/Scheduler.h"
#include "Platform/Scripting.h"
#include "Platform/SecretStore.h"
#include "Platform/SoundPlayer.h"
#include "Platform/ToolDialogue.h"
#include "Platform/Tools.h"

#include <QAbstractNativeEventFilter>

#include <memory>

namespace morvane {

/// The implementations of the ports in this run. Made once, in `launch`, and outlives everything
/// that uses it; main thread.
struct PlatformServices {
    std::unique_ptr<Scheduler> scheduler;
    // Declared before the pool, which calls them until its end.
    std::unique_ptr<SecretStore> secrets = std::make_unique<NullSecretStore>();
    std::unique_ptr<ToolDialogue> dialogue = std::make_unique<NullToolDialogue>();
    std::unique_ptr<Processes> processes = std::make_unique<NullProcesses>();
    std::unique_ptr<BackgroundPool> background; ///< ends before the scheduler that it reports to
    std::unique_ptr<InstalledApplications> applications;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<ProgramFile> programFile = std::make_unique<ProgramFile>();
    std::unique_ptr<HttpsClient> https = std::make_unique<NullHttpsClient>();
    std::unique_ptr<PackageInstaller> installer = std::make_unique<NullPackageInstaller>();
    std::unique_ptr<SoundPlayer> sounds = std::make_unique<NullSoundPlayer>();
    std::unique_ptr<Tools> tools;
    std::unique_ptr<Scripting> scripting;

    // What needs a screen. Without one no widget can be made, and the server runs alone.

    bool hasScreen = false;
    std::shared_ptr<QObject> screenConnection;            ///< what the ports below use, if anything
    std::unique_ptr<QAbstractNativeEventFilter> heldKeys; ///< filters held keys, if needed
    std::unique_ptr<Displays> displays = std::make_unique<NoScreen::NullDisplays>();
    std::unique_ptr<OverlayWindows> overlays = std::make_unique<NoScreen::NullOverlayWindows>();
    std::unique_ptr<PointerMonitor> pointer = std::make_unique<NoScreen::NullPointerMonitor>();
    std::unique_ptr<ForegroundApplication> foreground = std::make_unique<ForegroundApplication>();
    std::unique_ptr<HotKeys> hotKeys = std::make_unique<NoScreen::NullHotKeys>();
    std::unique_ptr<HostWindows> hostWindows = std::make_unique<NoScreen::NullHostWindows>();
    std::unique_ptr<StatusItemHost> statusItemHost =
        std::make_unique<NoScreen::NullStatusItemHost>();
    std::unique_ptr<MotionPreference> motion = std::make_unique<NoScreen::NullMotionPreference>();
};

} // namespace morvane
