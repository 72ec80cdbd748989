#pragma once

#include "Platform/HotKeys.h"

#include <QString>

#include <functional>

namespace morvane {

class AgentConnections;
class MorvaneSettings;
class MotionPreference;
class Scheduler;
class StatusItemHost;
class UpdateManager;
class UsagePoller;

/// What the program's windows ask of those that own it. Each is set. Main thread.
struct ProgramActions {
    std::function<QString()> serverStatus;
    std::function<void(bool)> setApprovalsEnabled;
    /// Starts or ends asking for the limits.
    std::function<void(bool)> setUsageEnabled;
    /// Allows another try at the secret store.
    std::function<void()> retryKeychainAccess;
    std::function<bool()> launchAtLogin;
    std::function<void(bool)> setLaunchAtLogin;
    /// Whether the desktop lets this program raise other programs' windows.
    std::function<bool()> canFocusWindows;
    /// How it stands with the key that opens the panel.
    std::function<HotKeys::State()> panelKeyState;
    /// Whether the desktop alone says which key that is.
    std::function<bool()> desktopChoosesKeys;
    std::function<bool()> hasTrayIcon;
    /// Looks for a newer version, and shows what comes of it.
    std::function<void()> checkForUpdates;
    std::function<void()> testSound;
    std::function<void()> testLimitChime;
    /// Takes everything of ours off this machine, and tells what, an item a line.
    std::function<QString()> removeEverything;
    std::function<void()> quit;
};

/// What a window shows, and by what it changes it. Everything outlives the window.
struct WindowContext {
    MorvaneSettings &settings;
    AgentConnections &connections;
    const UsagePoller &usage;
    UpdateManager &updates;
    Scheduler &scheduler;
    MotionPreference &motion;
    const StatusItemHost &statusItemHost;
    ProgramActions program;
};

} // namespace morvane
