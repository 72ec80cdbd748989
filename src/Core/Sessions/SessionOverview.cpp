#include "Core/Sessions/SessionOverview.h"

namespace morvane {

namespace {

template <typename Value, typename Compute>
const Value &kept(std::optional<Value> &value, Compute compute) {
    if (!value) {
        value = compute();
    }
    return *value;
}

} // namespace

void SessionOverview::forgetSessions() {
    m_summary.reset();
    m_sorted.reset();
    forgetHistory();
}

void SessionOverview::forgetHistory() {
    m_recentlyCompleted.reset();
    m_archived.reset();
    m_showsAgentBadges.reset();
}

const SessionSummary &SessionOverview::summary() const {
    return kept(m_summary, [this] { return SessionSummary::of(m_sessions); });
}

const QList<Session> &SessionOverview::sorted() const {
    return kept(m_sorted, [this] { return SessionOrder::sorted(m_sessions); });
}

SessionSlice SessionOverview::active() const {
    return SessionOrder::active(sorted());
}

SessionSlice SessionOverview::reportable() const {
    return SessionOrder::reportable(sorted());
}

SessionSlice SessionOverview::open() const {
    return SessionOrder::open(sorted());
}

const SessionOverview::History &SessionOverview::recentlyCompleted() const {
    return kept(m_recentlyCompleted, [this] {
        return SessionOrder::recentlyCompleted(SessionOrder::jumpable(m_history), m_sessions);
    });
}

const SessionOverview::History &SessionOverview::archived() const {
    return kept(m_archived, [this] {
        return SessionOrder::archived(SessionOrder::jumpable(m_history), m_sessions);
    });
}

bool SessionOverview::showsAgentBadges() const {
    return kept(m_showsAgentBadges,
                [this] { return SessionOrder::showsAgentBadges(m_sessions, m_history); });
}

} // namespace morvane
