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

/// What the program's windows ask of the program. Every function is set. Main thread.
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
    /// The state of the key that opens the panel.
    std::function<HotKeys::State()> panelKeyState;
    /// Whether only the desktop can assign that key.
    std::function<bool()> desktopChoosesKeys;
    std::function<bool()> hasTrayIcon;
    /// Looks for a newer version, and shows the result.
    std::function<void()> checkForUpdates;
    std::function<void()> testSound;
    std::function<void()> testLimitChime;
    /// Removes everything of ours from this machine, and returns what was removed and what couldn't
    /// be, an item a line.
    std::function<QString()> removeEverything;
    std::function<void()> quit;
};

/// What a window shows and what it can change. Everything outlives the window.
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
