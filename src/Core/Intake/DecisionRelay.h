#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Intake/EventConnection.h"
#include "Core/Intake/HookEvent.h"
#include "Platform/Scheduler.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>

namespace morvane {

/// Holds the hooks that wait for a person: parks their connections, and answers each exactly once.
/// Owned by `EventServer`. The parked requests belong to `pendingQueue`; taking one out of their
/// map is the step that decides who answers it.
///
/// Agents choose the ids of their calls, and some use the same one for every call. So an answer
/// only reaches a request that the main thread knew of when the answer was given.
class DecisionRelay : public std::enable_shared_from_this<DecisionRelay> {
public:
    /// All are called on the main thread, through `main`.
    struct Handlers {
        /// A hook waits, under the event's decision id.
        std::function<void(const HookEvent &)> onParked;
        /// Nobody can make this decision any more.
        std::function<void(const QString &)> onExpired;
        /// The same, if the end of the hook means that its agent may have been interrupted.
        std::function<void(const QString &)> onHungUp = [](const QString &) {};
    };

    /// `timers` gives the time limits, and may call from any thread.
    DecisionRelay(EventConnection::Queue pendingQueue, Scheduler &main, Scheduler &timers,
                  Handlers handlers);

    /// Keeps the connection open, under the id of the tool call; under a new id if there is none,
    /// or another session's request waits under it. An older request of the same session and id is
    /// released without an answer. `adapter` is that of the agent's release, and must outlive the
    /// relay. Safe from any thread.
    void park(HookEvent event, const AgentAdapter &adapter, EventConnection::Pointer connection,
              QByteArray payload);

    /// Answers the request, if it still waits. Safe from any thread; returns at once.
    void resolve(const QString &id, const AgentDecision &decision);

    /// Releases every request without an answer. Safe from any thread; returns at once.
    void releaseAll();

private:
    struct Pending {
        EventConnection::Pointer connection;
        const AgentAdapter &adapter;
        QString sessionID;
        QString nativeEvent;
        std::optional<QString> toolName;
        QByteArray payload;
        std::uint64_t serial; ///< position among all that were ever parked, from 1
        Task timer;
    };

    void store(HookEvent event, const AgentAdapter &adapter, EventConnection::Pointer connection,
               QByteArray payload);
    QString idFor(const HookEvent &event) const;
    void finish(const Pending &pending, const AgentDecision &decision);
    void expire(const QString &id, std::uint64_t serial);
    void discard(const QString &id, std::uint64_t serial);
    void tell(const std::function<void(const QString &)> &handler, const QString &id);
    std::optional<Pending> take(const QString &id);

    /// The same, but only if the request under the id has this serial number.
    std::optional<Pending> take(const QString &id, std::uint64_t serial);

    EventConnection::Queue m_queue;
    Scheduler &m_main;
    Scheduler &m_timers;
    const Handlers m_handlers;
    std::unordered_map<QString, Pending> m_pending;
    std::uint64_t m_lastSerial = 0;
    std::atomic<std::uint64_t> m_lastTold = 0; ///< serial of the newest that the main thread knows
};

} // namespace morvane
