#include "Core/SessionOverview.h"

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
    m_active.reset();
    m_reportable.reset();
    m_open.reset();
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

const QList<Session> &SessionOverview::active() const {
    return kept(m_active, [this] { return SessionOrder::active(sorted()); });
}

const QList<Session> &SessionOverview::reportable() const {
    return kept(m_reportable, [this] { return SessionOrder::reportable(sorted()); });
}

const QList<Session> &SessionOverview::open() const {
    return kept(m_open, [this] { return SessionOrder::open(sorted()); });
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
