#pragma once

#include "Core/Hooks/AgentSettingsFile.h"
#include "Core/Hooks/Health.h"
#include "Core/Hooks/HookTarget.h"
#include "Platform/Failure.h"

#include <QCoreApplication>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace morvane {

class AgentAdapter;
class MorvaneSettings;

/// Connects one agent with the event server by what it writes into the agent's own configuration,
/// and takes that out again; everything else there survives. A value made afresh for each
/// operation; main thread, synchronous. What answers a question never fails, but takes what it
/// can't read for absent.
class HookInstaller {
    Q_DECLARE_TR_FUNCTIONS(HookInstaller)

public:
    /// `boundPort` is the port that the server really has; `moment` waits until settings that are
    /// found half written may be whole. The adapter must outlive the installer.
    HookInstaller(const AgentAdapter &adapter, const MorvaneSettings &settings,
                  std::uint16_t boundPort,
                  std::function<void()> moment = &AgentSettingsFile::moment);

    /// Writes our hooks, in place of whatever is there of ours.
    [[nodiscard]] std::optional<Failure> install() const;

    /// Takes our hooks out. Settings that can't be understood are left alone.
    [[nodiscard]] std::optional<Failure> uninstall() const;

    /// Brings a connected agent up to date with the port, the token and this version. Best effort.
    void renew() const;

    /// Whether there are any hooks of ours.
    bool isInstalled() const;

    /// The first form of the agent whose releases have such hooks as are there of ours, be they out
    /// of date in other ways; none where there are none, or where they tell no forms apart.
    const AgentAdapter *presentForm() const;

    /// Whether there is anything of ours, be it what makes no connection, such as a status line
    /// whose hooks somebody has taken out.
    bool hasTraces() const;

    /// Takes all of that out.
    [[nodiscard]] std::optional<Failure> removeTraces() const;

    /// Whether what is there of ours differs from what `install` would write. Always false of a
    /// plugin, which `renew` writes anew without asking.
    bool hasStaleEntries() const;

    Health health() const;

    /// Turns the agent's own desktop notifications off, or on. Nothing happens where the agent has
    /// no such setting. The value that it had isn't kept.
    [[nodiscard]] std::optional<Failure> setNotificationsSuppressed(bool suppressed) const;

    /// Whether they are off, and were not before our first write, as far as that is known.
    bool hasSuppressedNotifications() const;

    /// Gives them back the value that they had then.
    [[nodiscard]] std::optional<Failure> returnNotifications() const;

private:
    std::unique_ptr<HookTarget> m_target;
};

} // namespace morvane
