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

/// Connects one agent with the event server by writing into the agent's own configuration, and
/// takes that out again; everything else there survives. There is a subclass for each kind of place
/// that hooks go into. Made afresh for each operation; main thread, synchronous. Queries never
/// fail, but treat what they can't read as absent.
class HookInstaller {
    Q_DECLARE_TR_FUNCTIONS(HookInstaller)

public:
    /// `boundPort` is the port that the server really has; `moment` waits long enough for
    /// half-written settings to become whole. The adapter must outlive the installer.
    static std::unique_ptr<HookInstaller>
    make(const AgentAdapter &adapter, const MorvaneSettings &settings, std::uint16_t boundPort,
         std::function<void()> moment = &AgentSettingsFile::moment);

    HookInstaller() = default;
    HookInstaller(const HookInstaller &) = delete;
    HookInstaller &operator=(const HookInstaller &) = delete;
    virtual ~HookInstaller() = default;

    /// Writes our hooks, replacing any that are there.
    virtual Result<void> install() const = 0;

    /// Takes our hooks out. Settings that can't be understood are left alone.
    virtual Result<void> uninstall() const = 0;

    /// Brings a connected agent up to date with the port, the token and this version. Best effort.
    virtual void renew() const = 0;

    /// Whether there are any hooks of ours.
    virtual bool isInstalled() const = 0;

    /// The first form of the agent that our present hooks fit, even if they are out of date
    /// otherwise. None without such hooks, or where hooks don't tell the forms apart.
    virtual const AgentAdapter *presentForm() const { return nullptr; }

    /// Whether there is anything of ours, including what makes no connection by itself, such as a
    /// status line whose hooks somebody has removed.
    virtual bool hasTraces() const { return isInstalled(); }

    /// Removes everything of ours.
    virtual Result<void> removeTraces() const { return uninstall(); }

    /// Whether our entries differ from those that `install` would write. Always false for a plugin,
    /// which `renew` rewrites without asking.
    virtual bool hasStaleEntries() const { return false; }

    virtual Health health() const = 0;

    /// Turns the agent's own desktop notifications off, or on. Nothing happens where the agent has
    /// no such setting. The setting's former value isn't kept.
    virtual Result<void> setNotificationsSuppressed(bool) const { return {}; }

    /// Whether they are off and, as far as is known, weren't before our first write.
    virtual bool hasSuppressedNotifications() const { return false; }

    /// Restores the value that the setting had before our first write.
    virtual Result<void> returnNotifications() const { return {}; }
};

} // namespace morvane
