#include "Core/SessionOrder.h"

#include <QSet>

#include <algorithm>
#include <tuple>
#include <vector>

namespace morvane::SessionOrder {

namespace {

constexpr qsizetype maxJumpable = 5;

int rank(SessionState state) {
    switch (state) {
    case SessionState::needsInput:
        return 0;
    case SessionState::working:
        return 1;
    case SessionState::failed:
        return 2;
    case SessionState::done:
        return 3;
    case SessionState::idle:
        break;
    }
    return 4;
}

bool comesBefore(const Session &left, const Session &right) {
    // The later event first; the id keeps rows that tie from changing places by chance.
    return std::tuple(rank(left.state), right.lastEventAt, left.id) <
           std::tuple(rank(right.state), left.lastEventAt, right.id);
}

template <typename Value, typename Predicate>
QList<Value> where(const QList<Value> &list, Predicate holds) {
    QList<Value> result;
    std::ranges::copy_if(list, std::back_inserter(result), holds);
    return result;
}

/// The ids that the records of the finished sessions have.
QSet<QString> finishedRecordIDs(const Sessions &sessions) {
    QSet<QString> result;
    for (const Session &session : sessions) {
        if (session.state == SessionState::done || session.state == SessionState::failed) {
            result.insert(CompletedRecord::idFor(session));
        }
    }
    return result;
}

} // namespace

QList<Session> sorted(const Sessions &sessions) {
    // A session is too large to be moved about again and again.
    std::vector<const Session *> order;
    order.reserve(static_cast<std::size_t>(sessions.size()));
    for (const Session &session : sessions) {
        order.push_back(&session);
    }
    std::ranges::sort(order, [](const Session *left, const Session *right) {
        return comesBefore(*left, *right);
    });
    QList<Session> result;
    result.reserve(sessions.size());
    for (const Session *session : order) {
        result.append(*session);
    }
    return result;
}

QList<Session> active(const QList<Session> &sorted) {
    return where(sorted, [](const Session &session) { return session.state < SessionState::done; });
}

QList<Session> reportable(const QList<Session> &sorted) {
    return where(sorted,
                 [](const Session &session) { return session.state != SessionState::idle; });
}

QList<Session> open(const QList<Session> &sorted) {
    return where(sorted,
                 [](const Session &session) { return session.state == SessionState::idle; });
}

QList<CompletedRecord> jumpable(const QList<CompletedRecord> &history) {
    return history.first(std::min(history.size(), maxJumpable));
}

QList<CompletedRecord> recentlyCompleted(const QList<CompletedRecord> &jumpable,
                                         const Sessions &sessions) {
    const QSet<QString> finished = finishedRecordIDs(sessions);
    return where(jumpable,
                 [&](const CompletedRecord &record) { return finished.contains(record.id); });
}

QList<CompletedRecord> archived(const QList<CompletedRecord> &jumpable, const Sessions &sessions) {
    const QSet<QString> finished = finishedRecordIDs(sessions);
    return where(jumpable,
                 [&](const CompletedRecord &record) { return !finished.contains(record.id); });
}

bool showsAgentBadges(const Sessions &sessions, const QList<CompletedRecord> &history) {
    QSet<AgentKind> agents;
    for (const Session &session : sessions) {
        agents.insert(session.agent);
    }
    for (const CompletedRecord &record : history) {
        agents.insert(record.agent.value_or(AgentKind::claude));
    }
    return agents.size() > 1;
}

} // namespace morvane::SessionOrder
