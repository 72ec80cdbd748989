#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Intake/HookEvent.h"
#include "Core/Sessions/CompletedHistory.h"
#include "Core/Sessions/DiscoveredSession.h"
#include "Core/Sessions/Session.h"
#include "Core/Sessions/SessionOverview.h"
#include "Core/Sessions/SessionTranscripts.h"
#include "Core/Sessions/SessionTransition.h"
#include "Platform/Scheduler.h"

#include <QObject>

#include <functional>
#include <map>

namespace morvane {

class MorvaneSettings;

/// Every live session and the history of finished ones. Hook events move the sessions through
/// their states, a person's answers release the hooks that wait.
///
/// Owned by `AppController`, used on the main thread only. Unknown ids, absent records and indices
/// out of range are no-ops. `SessionTransition` holds the state rules; the store carries out their
/// results, and publishes.
class SessionStore : public QObject {
    Q_OBJECT

public:
    SessionStore(MorvaneSettings &settings, SessionSurroundings surroundings, Scheduler &scheduler);

    /// Live sessions by id.
    const Sessions &sessions() const { return m_sessions; }

    /// Finished sessions, newest first.
    const QList<CompletedRecord> &completedHistory() const { return m_history.records(); }

    // Derived from these, computed once for each change.

    /// The one status of all sessions, and since when; none without a session.
    std::optional<SessionState> aggregatedState() const { return aggregate().state; }
    std::optional<Date> aggregatedStateSince() const { return aggregate().since; }
    /// All sessions: by state, the one that waits for a person first, then the latest event first.
    QList<Session> sortedSessions() const { return m_overview.sorted(); }
    /// The sessions that are working or wait for a person.
    SessionSlice activeSessions() const { return m_overview.active(); }
    /// The sessions that are anything but idle.
    SessionSlice reportableSessions() const { return m_overview.reportable(); }
    /// The sessions that are idle.
    SessionSlice openSessions() const { return m_overview.open(); }
    /// The finished sessions that are on offer: the first few of the history.
    QList<CompletedRecord> jumpableCompleted() const;
    /// The finished sessions on offer whose live session is still there.
    QList<CompletedRecord> recentlyCompleted() const { return m_overview.recentlyCompleted(); }
    /// The finished sessions on offer whose live session is gone.
    QList<CompletedRecord> archivedCompleted() const { return m_overview.archived(); }
    /// The finished session that the record is of; none once it has gone or is no longer finished.
    std::optional<Session> finishedSession(const CompletedRecord &record) const {
        return SessionOrder::finishedSession(record, m_sessions);
    }
    bool hasPendingDecision() const { return summary().hasPendingDecision; }
    bool hasExternalPrompt() const { return summary().hasExternalPrompt; }
    bool hasUnacknowledgedNeedsInput() const { return summary().hasUnacknowledgedNeedsInput; }
    bool hasReportableSessions() const { return summary().hasReportableSessions; }
    bool hasWorkingUsageMilestoneSession() const {
        return summary().hasWorkingUsageMilestoneSession;
    }
    /// True when live and finished sessions are of more than one agent.
    bool showsAgentBadges() const { return m_overview.showsAgentBadges(); }

    /// Answers the hook that waits under this decision id. Set by the controller; while it is unset
    /// answers are dropped.
    std::function<void(const QString &decisionID, const AgentDecision &)> resolveDecision;

    /// Set by the controller; while it is unset no transcript is read.
    SessionTranscripts::Read readTranscript;

    /// The one entry for hooks.
    void apply(const HookEvent &event);

    /// Adds the sessions found on disk, as idle ones; skips those that are known already or would
    /// be cleared at once.
    void restore(const QList<DiscoveredSession> &discovered);

    /// Marks one session as seen.
    void acknowledge(const QString &sessionID);

    /// Marks every finished session as seen.
    void acknowledgeDone();

    /// Forgets the sessions that this record stands for and that aren't at work.
    void removeSessions(const QString &recordID);

    /// Names a working directory, its sessions and its record; an absent or empty name removes the
    /// present one.
    void renameCwd(const QString &cwd, const std::optional<QString> &name);

    /// Answers the tool call that the session waits with.
    void decide(const QString &sessionID, const AgentDecision &decision);

    /// Chooses one option of one question; answering the last open question sends all answers.
    void answer(const QString &sessionID, const QString &question, const QString &option);

    /// Chooses by position, from 0, in the order of the buttons: among the options of the first
    /// open question, else among the choices of the tool call that waits. A caller that handles a
    /// key must first ask the strip whether it has been shown long enough to be read.
    void chooseByIndex(const QString &sessionID, qsizetype index);

    /// The server has given up a hook that waited.
    void approvalExpired(const QString &decisionID);

    /// Releases every hook that waits, so that the agents ask in their own prompts.
    void releaseApprovals();

    /// The hook that waited has gone, and nothing is left to decide. If no event follows, the agent
    /// was interrupted.
    void approvalHungUp(const QString &decisionID);

    /// The session's agent has ended without a hook, and so has the session.
    void agentEnded(const QString &sessionID);

    /// The session whose prompt the digit keys answer.
    std::optional<Session> sessionAwaitingDecision() const;

signals:
    /// The sessions have changed.
    void sessionsChanged();
    void completedHistoryChanged();
    /// A session has ended or was cleared away.
    void sessionRemoved(const QString &sessionID);
    /// A session has come to need a person, or has finished or failed; sent for those states only.
    void stateChanges(morvane::SessionState state, const QString &sessionID);

private:
    void carryOut(SessionTransition &&transition);

    /// Signals that a session has come to need a person or has finished; reads the transcript of a
    /// finished one for this purpose.
    void followUp(const QString &sessionID, std::optional<SessionState> previous, Date now,
                  SessionTranscripts::Purpose purpose);
    void endQuietly(const QString &sessionID, Date lastEventAt);
    void endWithoutHook(const Session &session, const TranscriptInfo &info);
    std::optional<Session> waitingFor(const QString &decisionID) const;

    /// Updates the session from its transcript, if it has one; for `completion` also its summary
    /// and its record's. Does nothing while its transcript is being read already.
    void enrichFromTranscript(const QString &sessionID, SessionTranscripts::Purpose purpose,
                              Date now);

    /// The same for a session found on disk; sets its summary only if it has none.
    void enrichRestored(const QString &sessionID);

    void learn(const Session &asked, SessionTranscripts::Purpose purpose,
               const TranscriptInfo &info);
    void recordCompleted(const Session &session, Date now);
    void publishSessions();
    void publishHistory();
    const SessionSummary &summary() const { return m_overview.summary(); }
    const AggregateStatus &aggregate() const { return summary().aggregate; }
    void releaseApproval(const QString &sessionID);
    void resolve(const QString &decisionID, const AgentDecision &decision);
    void removeSession(const QString &sessionID);
    void scheduleCleanup();
    void clearStaleDoneSessions();

    /// Null for an unknown session. The pointer is valid until the sessions change: look the
    /// session up again after each signal, and after each decision that is passed on.
    const Session *find(const QString &sessionID) const;

    MorvaneSettings &m_settings;
    SessionSurroundings m_surroundings;
    Scheduler &m_scheduler;
    Sessions m_sessions;
    CompletedHistory m_history;
    SessionOverview m_overview{m_sessions, m_history.records()};
    SessionTranscripts m_transcripts;
    Task m_cleanupTimer;
    std::map<QString, Task> m_interruptions; ///< by the session that may have been interrupted
};

} // namespace morvane
