#include "Core/Sessions/SessionOrder.h"

#include "Core/Settings/PanelKey.h"

#include <QSet>

#include <algorithm>
#include <vector>

namespace morvane::SessionOrder {

namespace {

constexpr qsizetype maxJumpable = PanelKey::digitCount;

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
    if (left.state != right.state) {
        return rank(left.state) < rank(right.state);
    }
    if (left.lastEventAt != right.lastEventAt) {
        return left.lastEventAt > right.lastEventAt;
    }
    // Rows that tie must not change places by chance.
    return left.id < right.id;
}

/// The position of the first session of this rank or a later one.
qsizetype rankBegin(const QList<Session> &sorted, int first) {
    const auto begin = std::ranges::partition_point(
        sorted, [&](const Session &session) { return rank(session.state) < first; });
    return begin - sorted.begin();
}

template <typename Predicate>
QList<CompletedRecord> where(const QList<CompletedRecord> &list, Predicate holds) {
    QList<CompletedRecord> result;
    std::ranges::copy_if(list, std::back_inserter(result), holds);
    return result;
}

/// The record ids of the finished sessions.
QSet<QString> finishedRecordIDs(const Sessions &sessions) {
    QSet<QString> result;
    for (const Session &session : sessions) {
        if (session.isFinished()) {
            result.insert(CompletedRecord::idFor(session));
        }
    }
    return result;
}

} // namespace

QList<Session> sorted(const Sessions &sessions) {
    // Sorts pointers: a session is too large to be moved again and again.
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

SessionSlice active(const QList<Session> &sorted) {
    return {sorted, 0, rankBegin(sorted, rank(SessionState::failed))};
}

SessionSlice reportable(const QList<Session> &sorted) {
    return {sorted, 0, rankBegin(sorted, rank(SessionState::idle))};
}

SessionSlice open(const QList<Session> &sorted) {
    return {sorted, rankBegin(sorted, rank(SessionState::idle)), sorted.size()};
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

std::optional<Session> finishedSession(const CompletedRecord &record, const Sessions &sessions) {
    std::optional<Session> result;
    for (const Session &session : sessions) {
        // Several may have finished in one folder, and a reply must not go to another of them.
        const auto pane = session.pane.locatesPane() ? std::optional(session.pane) : std::nullopt;
        const bool isOfRecord = session.isFinished() &&
                                CompletedRecord::idFor(session) == record.id && pane == record.pane;
        if (isOfRecord && (!result || session.lastEventAt > result->lastEventAt)) {
            result = session;
        }
    }
    return result;
}

bool hasItsPane(const Session &session, const Sessions &sessions) {
    return !session.pane.tmux || std::ranges::none_of(sessions, [&](const Session &other) {
        return other.pane.tmux == session.pane.tmux && other.ttyName == session.ttyName &&
               other.lastEventAt > session.lastEventAt;
    });
}

bool showsAgentBadges(const Sessions &sessions, const QList<CompletedRecord> &history) {
    QSet<AgentKind> agents;
    for (const Session &session : sessions) {
        agents.insert(session.agent);
    }
    for (const CompletedRecord &record : history) {
        agents.insert(record.agent.value_or(defaultAgentKind));
    }
    return agents.size() > 1;
}

} // namespace morvane::SessionOrder
