#include "Core/Sessions/SessionStore.h"

#include "Core/Settings/MorvaneSettings.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr Seconds cleanupInterval(60);
constexpr Seconds answerDelay(2); ///< an agent that was answered elsewhere goes on within this time

} // namespace

SessionStore::SessionStore(MorvaneSettings &settings, SessionSurroundings surroundings,
                           Scheduler &scheduler)
    : m_settings(settings), m_surroundings(std::move(surroundings)), m_scheduler(scheduler),
      m_history(settings.defaults()),
      m_transcripts(m_sessions, readTranscript, scheduler,
                    [this](const Session &asked, SessionTranscripts::Purpose purpose,
                           const TranscriptInfo &info) { learn(asked, purpose, info); }) {
    scheduleCleanup();
}

QList<CompletedRecord> SessionStore::jumpableCompleted() const {
    return SessionOrder::jumpable(completedHistory());
}

void SessionStore::apply(const HookEvent &event) {
    const Session *before = find(event.sessionID);
    if (event.agentID && !SessionTransition::concernsSession(before, event)) {
        if (event.decisionID) {
            resolve(*event.decisionID, AgentDecision::ask());
        }
        return;
    }
    const Date now = m_scheduler.now();
    const auto previous = before ? std::optional(before->state) : std::nullopt;
    if (before && SessionTransition::endsPendingDecision(*before, event)) {
        releaseApproval(event.sessionID);
        before = find(event.sessionID);
    }
    auto transition = SessionTransition::of(before, event, now, m_surroundings);
    // A turn that ended without last words may have failed, as its transcript tells. A turn that is
    // known to have failed has none.
    const bool isDone = transition.session.state == SessionState::done;
    const bool readsWords = !event.lastWords || (event.lastWords->isEmpty() && isDone);
    carryOut(std::move(transition));
    using enum SessionTranscripts::Purpose;
    followUp(event.sessionID, previous, now, readsWords ? completion : progress);
}

void SessionStore::restore(const QList<DiscoveredSession> &discovered) {
    const Date oldest = m_scheduler.now() - m_settings.autoClearAfter();
    QStringList restored;
    for (const DiscoveredSession &found : discovered) {
        const auto transition =
            SessionTransition::restored(find(found.id), found, oldest, m_surroundings);
        // Stored without `carryOut`, so that all are published at once.
        if (transition.write == SessionTransition::Write::store) {
            m_sessions.insert(found.id, transition.session);
            restored.append(found.id);
        }
    }
    if (!restored.isEmpty()) {
        publishSessions();
    }
    for (const QString &id : restored) {
        enrichRestored(id);
    }
}

void SessionStore::acknowledge(const QString &sessionID) {
    const auto session = m_sessions.find(sessionID);
    if (session != m_sessions.end() && !session->acknowledged) {
        session->acknowledged = true;
        publishSessions();
    }
}

void SessionStore::acknowledgeDone() {
    bool anySeen = false;
    for (Session &session : m_sessions) {
        if (session.isFinished() && !session.acknowledged) {
            session.acknowledged = true;
            anySeen = true;
        }
    }
    if (anySeen) {
        publishSessions();
    }
}

void SessionStore::removeSessions(const QString &recordID) {
    const Sessions present = m_sessions;
    for (const Session &session : present) {
        if (CompletedRecord::idFor(session) == recordID && !session.isAtWork()) {
            releaseApproval(session.id);
            removeSession(session.id);
        }
    }
}

void SessionStore::renameCwd(const QString &cwd, const std::optional<QString> &name) {
    if (cwd.isEmpty()) {
        return;
    }
    m_settings.setName(name, cwd);
    const auto effective = m_settings.name(cwd);
    bool anyRenamed = false;
    for (Session &session : m_sessions) {
        if (session.cwd == cwd && session.customName != effective) {
            session.customName = effective;
            anyRenamed = true;
        }
    }
    if (anyRenamed) {
        publishSessions();
    }
    m_history.rename(cwd, effective.value_or(Session::nameOf(cwd)));
    publishHistory();
}

void SessionStore::decide(const QString &sessionID, const AgentDecision &decision) {
    if (const Session *session = find(sessionID)) {
        carryOut(SessionTransition::decided(*session, decision, m_scheduler.now()));
    }
}

void SessionStore::answer(const QString &sessionID, const QString &question,
                          const QString &option) {
    if (const Session *session = find(sessionID)) {
        carryOut(SessionTransition::answered(*session, question, option, m_scheduler.now()));
    }
}

void SessionStore::chooseByIndex(const QString &sessionID, qsizetype index) {
    const Session *session = find(sessionID);
    if (!session || index < 0) {
        return;
    }
    if (session->pendingQuestion) {
        const qsizetype open = session->pendingQuestion->firstUnanswered();
        if (open >= 0) {
            const AgentQuestion question = session->pendingQuestion->questions[open];
            if (index < question.options.size()) {
                answer(sessionID, question.question, question.options[index].label);
            }
            return;
        }
    }
    if (session->pendingApproval) {
        const auto choices = session->pendingApproval->choices();
        if (index < choices.size()) {
            decide(sessionID, choices[index]);
        }
    }
}

std::optional<Session> SessionStore::waitingFor(const QString &decisionID) const {
    const auto waiting = std::ranges::find_if(m_sessions, [&](const Session &session) {
        return session.pendingDecisionID() == decisionID;
    });
    return waiting != m_sessions.end() ? std::optional(*waiting) : std::nullopt;
}

void SessionStore::approvalExpired(const QString &decisionID) {
    if (const auto session = waitingFor(decisionID)) {
        carryOut(SessionTransition::expired(*session));
    }
}

void SessionStore::approvalHungUp(const QString &decisionID) {
    const auto session = waitingFor(decisionID);
    if (!session) {
        return;
    }
    const Date now = m_scheduler.now();
    carryOut(SessionTransition::hungUp(*session, now));
    if (!session->pendingSubagent.isEmpty()) {
        followUp(session->id, session->state, now, SessionTranscripts::Purpose::completion);
        return;
    }
    const auto end = [this, id = session->id, lastEventAt = session->lastEventAt] {
        m_interruptions.erase(id);
        endQuietly(id, lastEventAt);
    };
    m_interruptions.insert_or_assign(session->id, m_scheduler.after(answerDelay, end));
}

void SessionStore::endQuietly(const QString &sessionID, Date lastEventAt) {
    const Session *session = find(sessionID);
    if (session && session->lastEventAt == lastEventAt) {
        carryOut(SessionTransition::turnGone(*session, SessionTransition::TurnEnd::interrupted,
                                             m_scheduler.now()));
    }
}

void SessionStore::agentEnded(const QString &sessionID) {
    releaseApproval(sessionID);
    removeSession(sessionID);
}

std::optional<Session> SessionStore::sessionAwaitingDecision() const {
    const SessionSlice active = m_overview.active();
    const auto waiting = std::ranges::find_if(active, [](const Session &session) {
        return session.pendingApproval || session.pendingQuestion;
    });
    return waiting != active.end() ? std::optional(*waiting) : std::nullopt;
}

void SessionStore::carryOut(SessionTransition &&transition) {
    for (const QString &decisionID : std::as_const(transition.releases)) {
        resolve(decisionID, AgentDecision::ask());
    }
    switch (transition.write) {
    case SessionTransition::Write::nothing:
        break;
    case SessionTransition::Write::store: {
        Session &session = m_sessions[transition.session.id];
        session = std::move(transition.session);
        m_transcripts.watchTurn(session);
        if (transition.readsTranscript) {
            m_transcripts.readProgress(session, m_scheduler.now());
        }
        publishSessions();
        break;
    }
    case SessionTransition::Write::remove:
        removeSession(transition.session.id);
        break;
    }
    if (transition.resolution) {
        resolve(transition.resolution->decisionID, transition.resolution->decision);
    }
}

void SessionStore::followUp(const QString &sessionID, std::optional<SessionState> previous,
                            Date now, SessionTranscripts::Purpose purpose) {
    const Session *found = find(sessionID);
    const bool callsForAttention =
        found && (found->isFinished() || found->state == SessionState::needsInput);
    if (!callsForAttention || found->state == previous) {
        return;
    }
    const Session session = *found; // a copy: a receiver of the signal may change it
    emit stateChanges(session.state, sessionID);
    if (session.isFinished()) {
        recordCompleted(session, now);
        enrichFromTranscript(sessionID, purpose, now);
        if (purpose == SessionTranscripts::Purpose::completion) {
            m_transcripts.awaitWords(session);
        }
    }
}

void SessionStore::enrichFromTranscript(const QString &sessionID,
                                        SessionTranscripts::Purpose purpose, Date now) {
    if (const Session *session = find(sessionID)) {
        m_transcripts.read(*session, purpose, now);
    }
}

void SessionStore::enrichRestored(const QString &sessionID) {
    enrichFromTranscript(sessionID, SessionTranscripts::Purpose::restored, m_scheduler.now());
}

void SessionStore::learn(const Session &asked, SessionTranscripts::Purpose purpose,
                         const TranscriptInfo &info) {
    using enum SessionTranscripts::Purpose;
    if (const Session *present = find(asked.id)) {
        const bool isForSummary = purpose == completion ? present->isFinished()
                                                        : purpose == restored && !present->summary;
        // The hook has told that the turn is over, but not how.
        const bool hasFailed = purpose == completion && present->state == SessionState::done &&
                               present->endsTurnsInTranscript &&
                               info.turn == TranscriptInfo::Turn::failed;
        const bool mayHaveEnded = purpose == turnEnd && present->lastEventAt == asked.lastEventAt;
        carryOut(SessionTransition::informed(*present, info,
                                             isForSummary ? info.lastAssistantText : std::nullopt));
        if (hasFailed || mayHaveEnded) {
            endWithoutHook(m_sessions.value(asked.id), info);
        }
    }
    // The record outlives its session, which may have gone meanwhile.
    if (purpose == completion && info.lastAssistantText &&
        m_history.summarize(CompletedRecord::idFor(asked), asked.stateChangedAt,
                            *info.lastAssistantText)) {
        publishHistory();
    }
}

void SessionStore::endWithoutHook(const Session &session, const TranscriptInfo &info) {
    const Date now = m_scheduler.now();
    carryOut(SessionTransition::endedWithoutHook(session, info, now));
    const Session *ended = find(session.id);
    if (ended && ended->state != session.state && session.isFinished()) {
        recordCompleted(*ended, now); // without signalling its end a second time
    } else {
        followUp(session.id, session.state, now, SessionTranscripts::Purpose::progress);
    }
}

void SessionStore::recordCompleted(const Session &session, Date now) {
    m_history.add(CompletedRecord::of(session, now));
    publishHistory();
}

void SessionStore::publishSessions() {
    m_overview.forgetSessions();
    emit sessionsChanged();
}

void SessionStore::publishHistory() {
    m_overview.forgetHistory();
    emit completedHistoryChanged();
}

void SessionStore::releaseApprovals() {
    const Sessions present = m_sessions;
    for (const Session &session : present) {
        releaseApproval(session.id);
    }
}

void SessionStore::releaseApproval(const QString &sessionID) {
    if (const Session *session = find(sessionID)) {
        carryOut(SessionTransition::released(*session));
    }
}

void SessionStore::resolve(const QString &decisionID, const AgentDecision &decision) {
    if (resolveDecision) {
        resolveDecision(decisionID, decision);
    }
}

void SessionStore::removeSession(const QString &sessionID) {
    m_transcripts.forget(sessionID);
    if (m_sessions.remove(sessionID)) {
        emit sessionRemoved(sessionID);
        publishSessions();
    }
}

void SessionStore::scheduleCleanup() {
    m_cleanupTimer = m_scheduler.after(cleanupInterval, [this] {
        clearStaleDoneSessions();
        scheduleCleanup();
    });
}

void SessionStore::clearStaleDoneSessions() {
    const Date now = m_scheduler.now();
    const Seconds limit = m_settings.autoClearAfter();
    const Sessions present = m_sessions;
    for (const Session &session : present) {
        const bool atRest = session.isFinished() || session.state == SessionState::idle;
        if (atRest && std::chrono::abs(now - session.lastEventAt) > limit) {
            releaseApproval(session.id);
            removeSession(session.id);
        }
    }
}

const Session *SessionStore::find(const QString &sessionID) const {
    const auto found = m_sessions.constFind(sessionID);
    return found != m_sessions.constEnd() ? &*found : nullptr;
}

} // namespace morvane

#include "moc_SessionStore.cpp"
