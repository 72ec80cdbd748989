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
constexpr Seconds quietInterval(1);    ///< without an event, before a turn's end is checked for
constexpr Seconds longestInterval(15); ///< between checks while the agent waits
constexpr int silenceDivisor = 10;     ///< the next check comes after a tenth of the silence so far

/// An agent may write its last words only after its hook has reported the end of the turn. So the
/// transcript is read again after each of these delays, one following the other.
constexpr std::array wordsDelays{Seconds(0.25), Seconds(0.75), Seconds(1)};

bool mayEndWithoutHook(const Session &session) {
    return session.isAtWork() && session.endsTurnsInTranscript && session.transcriptPath &&
           !session.pendingDecisionID();
}

/// An agent may wait for its person all night, so checking it must cost little. Working sessions
/// are checked together, on the full second.
Date nextLook(const Session &session, Date now) {
    if (session.state == SessionState::working) {
        return std::chrono::ceil<std::chrono::seconds>(now + quietInterval);
    }
    const Seconds silence = now - session.lastEventAt;
    const Seconds pause = std::clamp(silence / silenceDivisor, quietInterval, longestInterval);
    return now + std::chrono::duration_cast<Date::duration>(pause);
}

} // namespace

SessionTranscripts::SessionTranscripts(const Sessions &sessions, const Read &read,
                                       Scheduler &scheduler, Learn learn)
    : m_sessions(sessions), m_read(read), m_scheduler(scheduler), m_learn(std::move(learn)) {}

bool SessionTranscripts::canRead(const Session &session) const {
    return m_read && session.transcriptPath && !m_inFlight.contains(session.id);
}

void SessionTranscripts::read(const Session &session, Purpose purpose, Date now) {
    const bool isForNothing = purpose == Purpose::progress &&
                              !AgentRegistry::adapter(session.agent).transcriptTellsProgress();
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
        if (!isSameTurn) {
            m_lateWords.erase(sessionID);
            return;
        }
        read(*session, Purpose::completion, m_scheduler.now());
        awaitWords(sessionID, endedAt, looks + 1);
    };
    m_lateWords.insert_or_assign(sessionID, m_scheduler.after(wordsDelays[looks], look));
}

/// When a turn is interrupted or fails, some agents send no hook, but their transcript tells.
/// Nothing is checked while no such turn runs.
void SessionTranscripts::watchTurn(const Session &session) {
    if (!mayEndWithoutHook(session)) {
        m_turnWatches.erase(session.id);
        return;
    }
    const Date now = m_scheduler.now();
    const Date next = nextLook(session, now);
    TurnWatch &watch = m_turnWatches[session.id];
    if (std::exchange(watch.nextAt, next) != next) {
        watch.next = m_scheduler.after(
            next - now, [this, id = session.id] { lookForEnd(m_sessions.value(id)); });
    }
}

void SessionTranscripts::lookForEnd(const Session &session) {
    m_turnWatches[session.id].nextAt = {};
    watchTurn(session);
    const auto watch = m_turnWatches.find(session.id);
    if (watch == m_turnWatches.end() || !canRead(session)) {
        return;
    }
    const QFileInfo file(*session.transcriptPath);
    const Look look{session.lastEventAt, file.lastModified(), file.size()};
    if (std::exchange(watch->second.last, look) != look) {
        read(session, Purpose::turnEnd, m_scheduler.now());
    }
}

void SessionTranscripts::forget(const QString &sessionID) {
    m_lastReadAt.remove(sessionID);
    m_turnWatches.erase(sessionID);
}

} // namespace morvane
