#include "Core/Intake/DecisionRelay.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Agents/HookTimeout.h"

#include <asio/post.hpp>

#include <future>
#include <vector>

namespace morvane {

DecisionRelay::DecisionRelay(EventConnection::Queue pendingQueue, Scheduler &timers,
                             std::function<void(const QString &)> onExpired)
    : m_queue(std::move(pendingQueue)), m_timers(timers), m_onExpired(std::move(onExpired)) {}

void DecisionRelay::park(const HookEvent &event, EventConnection::Pointer connection,
                         QByteArray payload) {
    Pending pending{std::move(connection), event.agent,        event.nativeName,
                    event.toolName,        std::move(payload), {}};
    asio::post(m_queue, [self = shared_from_this(), id = *event.decisionID,
                         pending = std::make_shared<Pending>(std::move(pending))] {
        self->store(id, std::move(*pending));
    });
}

void DecisionRelay::store(const QString &id, Pending pending) {
    if (auto older = take(id)) {
        finish(*older, AgentDecision::ask());
    }
    const EventConnection *connection = pending.connection.get();
    pending.connection->watchForHangUp(m_queue, [weak = weak_from_this(), id, connection] {
        if (const auto self = weak.lock()) {
            self->discard(id, connection);
        }
    });
    pending.timer = m_timers.after(decisionLimit, [weak = weak_from_this(), id, connection] {
        if (const auto self = weak.lock()) {
            // A later request under the same id has a limit of its own.
            self->resolve(id, AgentDecision::ask(), true, connection);
        }
    });
    m_pending.emplace(id, std::move(pending));
}

void DecisionRelay::resolve(const QString &id, const AgentDecision &decision, bool expired,
                            const EventConnection *connection) {
    asio::post(m_queue, [self = shared_from_this(), id, decision, expired, connection] {
        auto pending = self->take(id, connection);
        if (!pending) {
            return;
        }
        self->finish(*pending, decision);
        if (expired) {
            self->m_onExpired(id);
        }
    });
}

void DecisionRelay::releaseAll() {
    std::promise<std::vector<QString>> snapshot;
    asio::post(m_queue, [self = shared_from_this(), &snapshot] {
        std::vector<QString> ids;
        for (const auto &[id, pending] : self->m_pending) {
            ids.push_back(id);
        }
        snapshot.set_value(std::move(ids));
    });
    for (const QString &id : snapshot.get_future().get()) {
        resolve(id, AgentDecision::ask());
    }
}

void DecisionRelay::finish(Pending &pending, const AgentDecision &decision) {
    const AgentAdapter &adapter = AgentRegistry::adapter(pending.agent);
    pending.connection->finish(
        "200 OK",
        adapter.encodeDecision(decision, pending.toolName, pending.payload, pending.nativeEvent));
}

/// The hook is gone. To the rest of the program that is the same as an expiry.
void DecisionRelay::discard(const QString &id, const EventConnection *connection) {
    if (auto pending = take(id, connection)) {
        pending->connection->close();
        m_onExpired(id);
    }
}

std::optional<DecisionRelay::Pending> DecisionRelay::take(const QString &id,
                                                          const EventConnection *connection) {
    const auto found = m_pending.find(id);
    if (found == m_pending.end() || (connection && found->second.connection.get() != connection)) {
        return std::nullopt;
    }
    std::optional<Pending> taken(std::move(found->second));
    m_pending.erase(found);
    return taken;
}

} // namespace morvane
