#include "Core/Intake/DecisionRelay.h"

#include "Core/Agents/AgentAdapter.h"
#include "Core/Agents/HookTimeout.h"

#include <QUuid>
#include <asio/dispatch.hpp>
#include <asio/post.hpp>

#include <utility>

namespace morvane {

DecisionRelay::DecisionRelay(EventConnection::Queue pendingQueue, Scheduler &main,
                             Scheduler &timers, Handlers handlers)
    : m_queue(std::move(pendingQueue)), m_main(main), m_timers(timers),
      m_handlers(std::move(handlers)) {}

void DecisionRelay::park(HookEvent event, const AgentAdapter &adapter,
                         EventConnection::Pointer connection, QByteArray payload) {
    asio::dispatch(m_queue, [self = shared_from_this(), event = std::move(event), &adapter,
                             connection = std::move(connection),
                             payload = std::move(payload)]() mutable {
        self->store(std::move(event), adapter, std::move(connection), std::move(payload));
    });
}

/// Reports the event once the request is stored, so that a decision about it finds the request, and
/// before the request's end can be noticed.
void DecisionRelay::store(HookEvent event, const AgentAdapter &adapter,
                          EventConnection::Pointer connection, QByteArray payload) {
    const QString id = idFor(event);
    event.decisionID = id;
    if (auto older = take(id)) {
        finish(*older, AgentDecision::ask());
    }
    const std::uint64_t serial = ++m_lastSerial;
    Pending pending{std::move(connection),
                    adapter,
                    event.sessionID,
                    event.nativeName,
                    event.toolName,
                    std::move(payload),
                    serial,
                    {}};
    pending.timer = m_timers.after(decisionLimit, [weak = weak_from_this(), id, serial] {
        if (const auto self = weak.lock()) {
            asio::post(self->m_queue, [self, id, serial] { self->expire(id, serial); });
        }
    });
    const auto parked = m_pending.emplace(id, std::move(pending)).first->second.connection;
    m_main.post([weak = weak_from_this(), event = std::move(event), serial] {
        if (const auto self = weak.lock()) {
            self->m_lastTold = serial;
            self->m_handlers.onParked(event);
        }
    });
    parked->watchForHangUp(m_queue, [weak = weak_from_this(), id, serial] {
        if (const auto self = weak.lock()) {
            self->discard(id, serial);
        }
    });
}

QString DecisionRelay::idFor(const HookEvent &event) const {
    if (event.toolUseID) {
        const auto found = m_pending.find(*event.toolUseID);
        if (found == m_pending.end() || found->second.sessionID == event.sessionID) {
            return *event.toolUseID;
        }
    }
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

void DecisionRelay::resolve(const QString &id, const AgentDecision &decision) {
    const std::uint64_t known = m_lastTold;
    asio::post(m_queue, [self = shared_from_this(), id, decision, known] {
        const auto found = self->m_pending.find(id);
        if (found != self->m_pending.end() && found->second.serial <= known) {
            self->finish(*self->take(id), decision);
        }
    });
}

void DecisionRelay::releaseAll() {
    asio::post(m_queue, [self = shared_from_this()] {
        for (const auto &[id, pending] : std::exchange(self->m_pending, {})) {
            self->finish(pending, AgentDecision::ask());
        }
    });
}

void DecisionRelay::finish(const Pending &pending, const AgentDecision &decision) {
    pending.connection->finish("200 OK", pending.adapter.encodeDecision(decision, pending.toolName,
                                                                        pending.payload,
                                                                        pending.nativeEvent));
}

void DecisionRelay::expire(const QString &id, std::uint64_t serial) {
    if (auto pending = take(id, serial)) {
        finish(*pending, AgentDecision::ask());
        tell(m_handlers.onExpired, id);
    }
}

/// The hook has gone. With most agents this means no more than an expiry.
void DecisionRelay::discard(const QString &id, std::uint64_t serial) {
    if (auto pending = take(id, serial)) {
        pending->connection->close();
        const bool tells = pending->adapter.contract().interruptsByHangUp;
        tell(tells ? m_handlers.onHungUp : m_handlers.onExpired, id);
    }
}

void DecisionRelay::tell(const std::function<void(const QString &)> &handler, const QString &id) {
    m_main.post([handler, id] { handler(id); });
}

std::optional<DecisionRelay::Pending> DecisionRelay::take(const QString &id) {
    auto node = m_pending.extract(id);
    return node ? std::optional(std::move(node.mapped())) : std::nullopt;
}

std::optional<DecisionRelay::Pending> DecisionRelay::take(const QString &id, std::uint64_t serial) {
    const auto found = m_pending.find(id);
    const bool isThis = found != m_pending.end() && found->second.serial == serial;
    return isThis ? take(id) : std::nullopt;
}

} // namespace morvane
