#pragma once

#include "Core/Hooks/Health.h"
#include "Platform/Failure.h"

#include <optional>

namespace morvane {

class AgentAdapter;

/// The place in one agent's configuration where our hooks go, of which there are several kinds.
/// Made by `HookInstaller`, whose operations these are; main thread, synchronous.
class HookTarget {
public:
    HookTarget() = default;
    HookTarget(const HookTarget &) = delete;
    HookTarget &operator=(const HookTarget &) = delete;
    virtual ~HookTarget() = default;

    [[nodiscard]] virtual std::optional<Failure> install() const = 0;
    [[nodiscard]] virtual std::optional<Failure> uninstall() const = 0;
    virtual void renew() const = 0;
    virtual bool isInstalled() const = 0;
    virtual const AgentAdapter *presentForm() const { return nullptr; }
    virtual bool hasTraces() const { return isInstalled(); }
    [[nodiscard]] virtual std::optional<Failure> removeTraces() const { return uninstall(); }
    virtual bool hasStaleEntries() const = 0;
    virtual Health health() const = 0;

    // Most places have no setting for the agent's own notifications.

    [[nodiscard]] virtual std::optional<Failure> setNotificationsSuppressed(bool) const {
        return std::nullopt;
    }
    virtual bool hasSuppressedNotifications() const { return false; }
    [[nodiscard]] virtual std::optional<Failure> returnNotifications() const {
        return std::nullopt;
    }
};

} // namespace morvane
