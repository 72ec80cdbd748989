#include "Core/Sessions/SessionTransition.h"

// The transitions without a hook's event: a person's answer, the end of a hook that waited, what a
// transcript tells, and a session found on disk.

namespace morvane {

namespace {

/// A hook arrives within this time; an end noted longer before a turn's first hook is an older
/// turn's.
constexpr Seconds hookDelay(2);

/// A person has dealt with what the session waited for. Nothing has come from the agent, so the
/// date of its last event stays.
SessionTransition resolve(Session session, Date now, SessionTransition::Resolution resolution) {
    // After `ask` the asker asks in the terminal, to which the person turns; after anything else,
    // even a refusal, it carries on.
    const bool asksThere = resolution.decision.kind == AgentDecision::Kind::ask;
    if (asksThere) {
        session.askers.insert(session.pendingSubagent);
    } else {
        session.askers.remove(session.pendingSubagent);
    }
    session.state = session.askers.isEmpty() ? SessionState::working : SessionState::needsInput;
    SessionTransition::forgetDecision(session);
    session.acknowledged = asksThere || session.askers.isEmpty();
    session.stateChangedAt = now;
    SessionTransition result = SessionTransition::store(std::move(session));
    result.resolution = std::move(resolution);
    return result;
}

} // namespace

SessionTransition SessionTransition::store(Session &&session) {
    if (!session.isAtWork()) {
        session.askers.clear();
    }
    return {Write::store, std::move(session), {}, false};
}

void SessionTransition::forgetDecision(Session &session) {
    session.pendingApproval.reset();
    session.pendingQuestion.reset();
    session.pendingCallDigest.clear();
    session.pendingSubagent.clear();
}

void SessionTransition::settle(Session &session, const QString &asker) {
    const bool wasLast = session.askers.remove(asker) && session.askers.isEmpty();
    if (wasLast && session.state == SessionState::needsInput) {
        session.state = SessionState::working;
        session.pendingExternalResponse.reset();
    }
}

void SessionTransition::endSubagent(Session &session, const QString &subagent) {
    if (!subagent.isEmpty()) {
        settle(session, subagent);
    }
    const bool anyWaits = session.pendingDecisionID() || !session.askers.isEmpty();
    if (session.subagentGoesOn && !anyWaits && session.isAtWork()) {
        session.subagentGoesOn = false;
        session.state = SessionState::done;
        session.acknowledged = false;
    }
}

SessionTransition SessionTransition::decided(Session session, const AgentDecision &decision,
                                             Date now) {
    if (!session.pendingApproval) {
        return {};
    }
    const QString decisionID = session.pendingApproval->id;
    return resolve(std::move(session), now, {decisionID, decision});
}

SessionTransition SessionTransition::answered(Session session, const QString &question,
                                              const QString &option, Date now) {
    if (!session.pendingQuestion) {
        return {};
    }
    session.pendingQuestion->answers.insert(question, option);
    if (session.pendingQuestion->firstUnanswered() >= 0) {
        return store(std::move(session));
    }
    const PendingQuestion complete = *session.pendingQuestion;
    return resolve(std::move(session), now, {complete.id, AgentDecision::answer(complete.answers)});
}

SessionTransition SessionTransition::expired(Session session) {
    if (!session.pendingDecisionID()) {
        return {};
    }
    forgetDecision(session);
    return store(std::move(session));
}

SessionTransition SessionTransition::hungUp(Session session, Date now) {
    if (!session.pendingDecisionID()) {
        return {};
    }
    const QString subagent = session.pendingSubagent;
    const SessionState before = session.state;
    forgetDecision(session);
    if (!subagent.isEmpty()) {
        endSubagent(session, subagent);
    }
    // Anybody else who asks still needs attention, unless the whole turn was interrupted.
    session.acknowledged = subagent.isEmpty() || session.askers.isEmpty();
    if (session.state != before) {
        session.stateChangedAt = now;
    }
    return store(std::move(session));
}

SessionTransition SessionTransition::turnGone(Session session, TurnEnd end, Date now) {
    const bool failed = end == TurnEnd::failed;
    const bool seemsDone = failed && session.state == SessionState::done;
    if ((!session.isAtWork() && !seemsDone) || session.pendingDecisionID()) {
        return {};
    }
    session.state = failed ? SessionState::failed : SessionState::idle;
    session.acknowledged = !failed;
    session.currentTool.reset();
    session.pendingAgents = 0;
    session.stateChangedAt = now;
    return store(std::move(session));
}

SessionTransition SessionTransition::endedWithoutHook(Session session, const TranscriptInfo &info,
                                                      Date now) {
    const bool failed = info.turn == TranscriptInfo::Turn::failed;
    // A start in the future was dated before the clock was set back, and can't be compared.
    const bool isOfOlderTurn =
        info.turnAt && session.atWorkSince <= now && session.atWorkSince - *info.turnAt > hookDelay;
    if (isOfOlderTurn || (!failed && info.turn != TranscriptInfo::Turn::interrupted)) {
        return {};
    }
    if (failed) {
        session.summary = info.failure;
    }
    // The agent no longer asks in its terminal either.
    session.pendingExternalResponse.reset();
    return turnGone(std::move(session), failed ? TurnEnd::failed : TurnEnd::interrupted, now);
}

SessionTransition SessionTransition::informed(const Session &before, const TranscriptInfo &info,
                                              const std::optional<QString> &words) {
    Session session = before;
    const auto takeKnown = [](auto &field, const auto &told) {
        if (told) {
            field = told;
        }
    };
    takeKnown(session.model, info.model);
    takeKnown(session.contextTokens, info.contextTokens);
    takeKnown(session.permissionMode, info.permissionMode);
    takeKnown(session.aiTitle, info.title);
    takeKnown(session.summary, words);
    return session == before ? SessionTransition() : store(std::move(session));
}

SessionTransition SessionTransition::released(Session session) {
    const auto decisionID = session.pendingDecisionID();
    SessionTransition result = expired(std::move(session));
    if (decisionID) {
        result.resolution = Resolution{*decisionID, AgentDecision::ask()};
    }
    return result;
}

SessionTransition SessionTransition::restored(const Session *before, const DiscoveredSession &found,
                                              Date oldest,
                                              const SessionSurroundings &surroundings) {
    // What hooks have told meanwhile is newer than anything on disk.
    if (before || found.lastActive < oldest) {
        return {};
    }
    Session session = found.session();
    session.customName = surroundings.customName(session.cwd);
    return store(std::move(session));
}

} // namespace morvane
