#include "Core/Sessions/SessionTranscripts.h"

#include <QFileInfo>

#include <array>
#include <utility>

namespace morvane {

namespace {

constexpr Seconds progressInterval(15);
constexpr Seconds quietInterval(1); ///< without an event, of a turn that may have ended without one

/// Agents may write their last words down only after they have told that the turn has ended: so
/// the transcript is read again, each time so long after the time before.
constexpr std::array wordsDelays{Seconds(0.25), Seconds(0.75), Seconds(1)};

bool mayEndUnsaid(const Session &session) {
    return session.isAtWork() && session.endsTurnsInTranscript && session.transcriptPath &&
           !session.pendingDecisionID();
}

} // namespace

SessionTranscripts::SessionTranscripts(const Sessions &sessions, const Read &read,
                                       Scheduler &scheduler, Learn learn)
    : m_sessions(sessions), m_read(read), m_scheduler(scheduler), m_learn(std::move(learn)) {}

bool SessionTranscripts::canRead(const Session &session) const {
    return m_read && session.transcriptPath && !m_inFlight.contains(session.id);
}

void SessionTranscripts::read(Session session, Purpose purpose, Date now) {
    if (!canRead(session)) {
        return;
    }
    m_inFlight.insert(session.id);
    if (purpose == Purpose::progress || purpose == Purpose::completion) {
        m_lastReadAt.insert(session.id, now);
    }
    m_read(session.agent, *session.transcriptPath,
           [this, asked = session, purpose](const TranscriptInfo &info) {
               m_inFlight.remove(asked.id);
               m_learn(asked, purpose, info);
           });
}

void SessionTranscripts::readProgress(const Session &session, Date now) {
    const auto last = m_lastReadAt.constFind(session.id);
    const bool longAgo =
        last == m_lastReadAt.constEnd() || std::chrono::abs(now - *last) > progressInterval;
    if (!session.model || longAgo) {
        read(session, Purpose::progress, now);
    }
}

void SessionTranscripts::awaitWords(const Session &session) {
    if (session.transcriptPath) {
        awaitWords(session.id, session.stateChangedAt, 0);
    }
}

void SessionTranscripts::awaitWords(const QString &sessionID, Date endedAt, std::size_t looks) {
    if (looks == wordsDelays.size()) {
        m_lateWords.erase(sessionID);
        return;
    }
    const auto look = [this, sessionID, endedAt, looks] {
        const auto session = m_sessions.constFind(sessionID);
        const bool isSameTurn = session != m_sessions.constEnd() && session->isFinished() &&
                                session->stateChangedAt == endedAt;
        if (isSameTurn) {
            read(*session, Purpose::completion, m_scheduler.now());
        }
        awaitWords(sessionID, endedAt, isSameTurn ? looks + 1 : wordsDelays.size());
    };
    m_lateWords.insert_or_assign(sessionID, m_scheduler.after(wordsDelays[looks], look));
}

/// What an agent leaves unsaid when a turn of its is interrupted, or fails, its transcript tells.
/// Nothing is looked at while no such turn runs.
void SessionTranscripts::watchTurn(const Session &session) {
    if (m_turnWatch || !mayEndUnsaid(session)) {
        return;
    }
    m_turnWatch = m_scheduler.after(quietInterval, [this] {
        m_turnWatch.reset();
        lookForEndedTurns();
        for (const Session &each : std::as_const(m_sessions)) {
            watchTurn(each);
        }
    });
}

void SessionTranscripts::lookForEndedTurns() {
    const Date now = m_scheduler.now();
    const Sessions present = m_sessions;
    for (const Session &session : present) {
        const bool isQuiet = std::chrono::abs(now - session.lastEventAt) >= quietInterval;
        if (!mayEndUnsaid(session) || !isQuiet) {
            continue;
        }
        const QFileInfo file(*session.transcriptPath);
        const Look look{session.lastEventAt, file.lastModified(), file.size()};
        if (m_looks.value(session.id) != look && canRead(session)) {
            m_looks.insert(session.id, look);
            read(session, Purpose::turnEnd, now);
        }
    }
}

void SessionTranscripts::forget(const QString &sessionID) {
    m_lastReadAt.remove(sessionID);
    m_looks.remove(sessionID);
}

} // namespace morvane
