#include "Core/Sessions/SessionTranscripts.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace morvane {

namespace {

constexpr Seconds progressInterval(15);
/// Without anything new of a turn that may have ended without an event. The second is what the
/// pauses between looks grow to while that goes on.
constexpr Seconds quietInterval(1);
constexpr Seconds longestQuietInterval(15);

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

void SessionTranscripts::read(const Session &session, Purpose purpose, Date now) {
    const bool isForNothing =
        purpose == Purpose::progress && !AgentRegistry::adapter(session.agent).tellsProgress();
    if (isForNothing || !canRead(session)) {
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
    if (mayEndUnsaid(session)) {
        lookAfter(quietInterval, session.id);
    } else {
        m_turnWatches.erase(session.id);
    }
}

void SessionTranscripts::lookAfter(Seconds pause, const QString &sessionID) {
    m_turnWatches[sessionID].next = m_scheduler.after(pause, [this, pause, sessionID] {
        const Session session = m_sessions.value(sessionID);
        const QFileInfo file(session.transcriptPath.value_or(QString()));
        const Look look{session.lastEventAt, file.lastModified(), file.size()};
        Look &last = m_turnWatches[sessionID].last;
        const bool isNew = look != last;
        lookAfter(isNew ? quietInterval : std::min(2 * pause, longestQuietInterval), sessionID);
        if (isNew && canRead(session)) {
            last = look;
            read(session, Purpose::turnEnd, m_scheduler.now());
        }
    });
}

void SessionTranscripts::forget(const QString &sessionID) {
    m_lastReadAt.remove(sessionID);
    m_turnWatches.erase(sessionID);
}

} // namespace morvane
