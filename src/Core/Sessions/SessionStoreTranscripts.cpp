// What the sessions learn from their transcripts, and when these are read.

#include "Core/Sessions/SessionStore.h"

#include <QFileInfo>

#include <array>
#include <utility>

namespace morvane {

namespace {

constexpr Seconds transcriptInterval(15);
constexpr Seconds quietInterval(1); ///< without an event, of a turn that may have ended without one

/// Agents may write their last words down only after they have told that the turn has ended: so
/// the transcript is read again, each time so long after the time before.
constexpr std::array wordsDelays{Seconds(0.25), Seconds(0.75), Seconds(1)};

/// Within which the hook of a prompt is told, so that what was written before was of an older turn.
constexpr Seconds promptDelay(2);

bool mayEndUnsaid(const Session &session) {
    return session.isAtWork() && session.endsTurnsInTranscript && session.transcriptPath &&
           !session.pendingDecisionID();
}

} // namespace

void SessionStore::enrichFromTranscript(const QString &sessionID, bool completion) {
    const auto session = stored(sessionID);
    if (!session || !beginRead(*session)) {
        return;
    }
    m_lastEnrichedAt.insert(sessionID, m_scheduler.now());
    const QString recordID = CompletedRecord::idFor(*session);
    const Date finishedAt = session->stateChangedAt;
    const auto use = [this, sessionID, completion, recordID,
                      finishedAt](const TranscriptInfo &info) {
        m_enrichmentsInFlight.remove(sessionID);
        if (auto present = stored(sessionID)) {
            if (completion && present->isFinished() && info.lastAssistantText) {
                present->summary = info.lastAssistantText;
            }
            takeTranscript(*present, info);
            // The hook has told that the turn is over, but not how.
            if (completion && present->state == SessionState::done &&
                present->endsTurnsInTranscript && info.turn == TranscriptInfo::Turn::failed) {
                endUnsaid(sessionID, present->lastEventAt, info);
            }
        }
        // The record outlives its session, which may have gone meanwhile.
        if (completion && info.lastAssistantText &&
            m_history.summarize(recordID, finishedAt, *info.lastAssistantText)) {
            publishHistory();
        }
    };
    readTranscript(session->agent, *session->transcriptPath, use);
}

void SessionStore::enrichRestored(const QString &sessionID) {
    const auto session = stored(sessionID);
    if (!session || !beginRead(*session)) {
        return;
    }
    const auto use = [this, sessionID](const TranscriptInfo &info) {
        m_enrichmentsInFlight.remove(sessionID);
        if (auto present = stored(sessionID)) {
            if (!present->summary) {
                present->summary = info.lastAssistantText;
            }
            takeTranscript(*present, info);
        }
    };
    readTranscript(session->agent, *session->transcriptPath, use);
}

void SessionStore::awaitWords(const QString &sessionID, Date endedAt, std::size_t looks) {
    if (looks == wordsDelays.size()) {
        m_lateWords.erase(sessionID);
        return;
    }
    const auto look = [this, sessionID, endedAt, looks] {
        const auto session = stored(sessionID);
        const bool isSameTurn =
            session && session->isFinished() && session->stateChangedAt == endedAt;
        if (isSameTurn) {
            enrichFromTranscript(sessionID, true);
        }
        awaitWords(sessionID, endedAt, isSameTurn ? looks + 1 : wordsDelays.size());
    };
    m_lateWords.insert_or_assign(sessionID, m_scheduler.after(wordsDelays[looks], look));
}

void SessionStore::enrichThrottled(const QString &sessionID, Date now) {
    const auto session = stored(sessionID);
    if (!session) {
        return;
    }
    const auto last = m_lastEnrichedAt.constFind(sessionID);
    const bool longAgo =
        last == m_lastEnrichedAt.constEnd() || std::chrono::abs(now - *last) > transcriptInterval;
    if (!session->model || longAgo) {
        enrichFromTranscript(sessionID, false);
    }
}

bool SessionStore::beginRead(const Session &session) {
    if (!readTranscript || !session.transcriptPath || m_enrichmentsInFlight.contains(session.id)) {
        return false;
    }
    m_enrichmentsInFlight.insert(session.id);
    return true;
}

void SessionStore::takeTranscript(Session session, const TranscriptInfo &info) {
    const auto take = [](auto &field, const auto &told) {
        if (told) {
            field = told;
        }
    };
    take(session.model, info.model);
    take(session.contextTokens, info.contextTokens);
    take(session.permissionMode, info.permissionMode);
    take(session.aiTitle, info.title);
    if (session != m_sessions.value(session.id)) {
        put(session);
    }
}

/// What an agent leaves unsaid when a turn of its is interrupted, or fails, its transcript tells.
/// Nothing is looked at while no such turn runs.
void SessionStore::watchTurn(const Session &session) {
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

void SessionStore::lookForEndedTurns() {
    const Date now = m_scheduler.now();
    const QHash<QString, Session> present = m_sessions;
    for (const Session &session : present) {
        const bool isQuiet = std::chrono::abs(now - session.lastEventAt) >= quietInterval;
        if (!mayEndUnsaid(session) || !isQuiet) {
            continue;
        }
        const QFileInfo file(*session.transcriptPath);
        const Look look{session.lastEventAt, file.lastModified(), file.size()};
        if (m_looks.value(session.id) == look || !beginRead(session)) {
            continue;
        }
        m_looks.insert(session.id, look);
        const auto use = [this, id = session.id,
                          lastEventAt = session.lastEventAt](const TranscriptInfo &info) {
            m_enrichmentsInFlight.remove(id);
            endUnsaid(id, lastEventAt, info);
        };
        readTranscript(session.agent, *session.transcriptPath, use);
    }
}

void SessionStore::endUnsaid(const QString &sessionID, Date lastEventAt,
                             const TranscriptInfo &info) {
    const bool failed = info.turn == TranscriptInfo::Turn::failed;
    auto session = stored(sessionID);
    if (!session || session->lastEventAt != lastEventAt ||
        (!failed && info.turn != TranscriptInfo::Turn::interrupted) ||
        (info.turnAt && session->promptedAt && *session->promptedAt - *info.turnAt > promptDelay)) {
        return;
    }
    if (failed) {
        session->summary = info.failure;
    }
    // The agent asks in its terminal no more either.
    session->pendingExternalResponse.reset();
    const SessionState before = session->state;
    const Date now = m_scheduler.now();
    carryOut(SessionTransition::turnGone(*session, failed, now), now);
    if (const auto ended = stored(sessionID); ended && before == SessionState::done) {
        recordCompleted(*ended, now); // and nothing is heard of its end once more
    } else {
        followUp(sessionID, before, now, false);
    }
}

} // namespace morvane
