#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Intake/EventConnection.h"
#include "Core/Intake/HookEvent.h"
#include "Platform/Scheduler.h"

#include <functional>
#include <memory>
#include <unordered_map>

namespace morvane {

/// Holds the hooks that wait for a person: parks their connections, and answers each exactly once.
/// Owned by `EventServer`. The parked requests belong to `pendingQueue`; taking one out of their
/// map is the step that decides who answers it.
class DecisionRelay : public std::enable_shared_from_this<DecisionRelay> {
public:
    /// The handler for a decision that nobody can make any more takes its id; it runs on
    /// `pendingQueue`. `timers` gives the time limits, and may call from any thread.
    DecisionRelay(EventConnection::Queue pendingQueue, Scheduler &timers,
                  std::function<void(const QString &)> onExpired);

    /// Keeps the connection open under the event's decision id. An older request under the same id
    /// is let go without an answer. Safe from any thread.
    void park(const HookEvent &event, EventConnection::Pointer connection, QByteArray payload);

    /// Answers the request, if it still waits, and on this connection where one is given. `expired`
    /// says that time decided, which is told to the handler. Safe from any thread; returns at once.
    void resolve(const QString &id, const AgentDecision &decision, bool expired = false,
                 const EventConnection *connection = nullptr);

    /// Lets every request go without an answer. Waits for `pendingQueue`, but not for the answers
    /// to be sent; so never called on it.
    void releaseAll();

private:
    struct Pending {
        EventConnection::Pointer connection;
        AgentKind agent;
        QString nativeEvent;
        std::optional<QString> toolName;
        QByteArray payload;
        Task timer;
    };

    void store(const QString &id, Pending pending);
    void finish(Pending &pending, const AgentDecision &decision);
    void discard(const QString &id, const EventConnection *connection);
    std::optional<Pending> take(const QString &id, const EventConnection *connection = nullptr);

    EventConnection::Queue m_queue;
    Scheduler &m_timers;
    std::function<void(const QString &)> m_onExpired;
    std::unordered_map<QString, Pending> m_pending;
};

} // namespace morvane
