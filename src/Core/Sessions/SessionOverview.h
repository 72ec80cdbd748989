#pragma once

#include "Core/Sessions/SessionOrder.h"
#include "Core/Sessions/SessionSummary.h"

#include <optional>

namespace morvane {

/// The sessions and the history as the views list them: computed when first asked for, and cached
/// until the next change. Owned by `SessionStore`; main thread only.
class SessionOverview {
public:
    using History = QList<CompletedRecord>;

    /// Both must outlive the overview, which must be told of their changes.
    SessionOverview(const Sessions &sessions, const History &history)
        : m_sessions(sessions), m_history(history) {}

    void forgetSessions();
    void forgetHistory();

    const SessionSummary &summary() const;
    const QList<Session> &sorted() const;
    SessionSlice active() const;
    SessionSlice reportable() const;
    SessionSlice open() const;
    const History &recentlyCompleted() const;
    const History &archived() const;
    bool showsAgentBadges() const;

private:
    const Sessions &m_sessions;
    const History &m_history;
    mutable std::optional<SessionSummary> m_summary;
    mutable std::optional<QList<Session>> m_sorted;
    mutable std::optional<History> m_recentlyCompleted;
    mutable std::optional<History> m_archived;
    mutable std::optional<bool> m_showsAgentBadges;
};

} // namespace morvane
