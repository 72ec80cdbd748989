#include "Core/SessionOrder.h"

#include <algorithm>
#include <array>
#include <utility>

namespace morvane::SessionOrder {

namespace {

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

template <typename Predicate>
QList<Session> where(const QList<Session> &list, Predicate holds) {
    QList<Session> result;
    std::ranges::copy_if(list, std::back_inserter(result), holds);
    return result;
}

} // namespace

QList<Session> sorted(const Sessions &sessions) {
    QList<Session> result = sessions.values();
    std::ranges::sort(result, comesBefore);
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

bool hasPendingDecision(const Sessions &sessions) {
    return std::ranges::any_of(
        sessions, [](const Session &session) { return session.pendingDecisionID().has_value(); });
}

bool hasExternalPrompt(const Sessions &sessions) {
    return std::ranges::any_of(sessions, [](const Session &session) {
        return session.pendingExternalResponse.has_value();
    });
}

bool hasUnacknowledgedNeedsInput(const Sessions &sessions) {
    return std::ranges::any_of(sessions, [](const Session &session) {
        return session.state == SessionState::needsInput && !session.acknowledged;
    });
}

bool showsAgentBadges(const Sessions &sessions) {
    return std::ranges::adjacent_find(sessions, std::ranges::not_equal_to(), &Session::agent) !=
           sessions.end();
}

} // namespace morvane::SessionOrder
