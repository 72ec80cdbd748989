#pragma once

#include "Core/Hooks/AgentSettingsFile.h"
#include "Core/Hooks/Health.h"
#include "Platform/Result.h"

#include <QCoreApplication>

#include <cstdint>
#include <functional>
#include <memory>

namespace morvane {

class AgentAdapter;
class MorvaneSettings;

/// Connects one agent with the event server by what it writes into the agent's own configuration,
/// and takes that out again; everything else there survives. There is one for each kind of place
/// where hooks go. Made afresh for each operation; main thread, synchronous. What answers a
/// question never fails, but takes what it can't read for absent.
class HookInstaller {
    Q_DECLARE_TR_FUNCTIONS(HookInstaller)

public:
    /// `boundPort` is the port that the server really has; `moment` waits until settings that are
    /// found half written may be whole. The adapter must outlive the installer.
    static std::unique_ptr<HookInstaller>
    make(const AgentAdapter &adapter, const MorvaneSettings &settings, std::uint16_t boundPort,
         std::function<void()> moment = &AgentSettingsFile::moment);

    HookInstaller() = default;
    HookInstaller(const HookInstaller &) = delete;
    HookInstaller &operator=(const HookInstaller &) = delete;
    virtual ~HookInstaller() = default;

    /// Writes our hooks, in place of whatever is there of ours.
    virtual Result<void> install() const = 0;

    /// Takes our hooks out. Settings that can't be understood are left alone.
    virtual Result<void> uninstall() const = 0;

    /// Brings a connected agent up to date with the port, the token and this version. Best effort.
    virtual void renew() const = 0;

    /// Whether there are any hooks of ours.
    virtual bool isInstalled() const = 0;

    /// The first form of the agent whose releases have such hooks as are there of ours, be they out
    /// of date in other ways; none where there are none, or where they tell no forms apart.
    virtual const AgentAdapter *presentForm() const { return nullptr; }

    /// Whether there is anything of ours, be it what makes no connection, such as a status line
    /// whose hooks somebody has taken out.
    virtual bool hasTraces() const { return isInstalled(); }

    /// Takes all of that out.
    virtual Result<void> removeTraces() const { return uninstall(); }

    /// Whether what is there of ours differs from what `install` would write. Always false of a
    /// plugin, which `renew` writes anew without asking.
    virtual bool hasStaleEntries() const { return false; }

    virtual Health health() const = 0;

    /// Turns the agent's own desktop notifications off, or on. Nothing happens where the agent has
    /// no such setting. The value that it had isn't kept.
    virtual Result<void> setNotificationsSuppressed(bool) const { return {}; }

    /// Whether they are off, and were not before our first write, as far as that is known.
    virtual bool hasSuppressedNotifications() const { return false; }

    /// Gives them back the value that they had then.
    virtual Result<void> returnNotifications() const { return {}; }
};

} // namespace morvane
