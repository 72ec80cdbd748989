#include "Core/Sessions/SessionTransition.h"

// What moves a session without a hook: a person's answer, the end of what it waited with, and what
// was found on disk.

namespace morvane {

namespace {

/// A person has dealt with what the session waited for. Nothing has come from the agent, so the
/// date of its last event stays.
SessionTransition settle(Session session, SessionState state, Date now,
                         SessionTransition::Resolution resolution) {
    SessionTransition::forgetDecision(session);
    session.acknowledged = true;
    session.state = state;
    session.stateChangedAt = now;
    SessionTransition result = SessionTransition::store(std::move(session));
    result.resolution = std::move(resolution);
    return result;
}

} // namespace

SessionTransition SessionTransition::store(Session session) {
    return {Write::store, std::move(session), {}, false};
}

void SessionTransition::forgetDecision(Session &session) {
    session.pendingApproval.reset();
    session.pendingQuestion.reset();
    session.pendingCall.clear();
}

SessionTransition SessionTransition::decided(Session session, const AgentDecision &decision,
                                             Date now) {
    if (!session.pendingApproval) {
        return {};
    }
    const QString decisionID = session.pendingApproval->id;
    // After `ask` the agent prompts in its own terminal; after anything else, a refusal too, it
    // carries on.
    const auto state = decision.kind == AgentDecision::Kind::ask ? SessionState::needsInput
                                                                 : SessionState::working;
    return settle(std::move(session), state, now, {decisionID, decision});
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
    return settle(std::move(session), SessionState::working, now,
                  {complete.id, AgentDecision::answer(complete.answers)});
}

SessionTransition SessionTransition::expired(Session session) {
    if (!session.pendingDecisionID()) {
        return {};
    }
    forgetDecision(session);
    return store(std::move(session));
}

SessionTransition SessionTransition::hungUp(Session session) {
    if (!session.pendingDecisionID()) {
        return {};
    }
    forgetDecision(session);
    session.acknowledged = true;
    return store(std::move(session));
}

SessionTransition SessionTransition::turnGone(Session session, bool failed, Date now) {
    const bool seemsDone = failed && session.state == SessionState::done;
    if ((!session.isAtWork() && !seemsDone) || session.pendingDecisionID() ||
        session.pendingExternalResponse) {
        return {};
    }
    session.state = failed ? SessionState::failed : SessionState::idle;
    session.acknowledged = !failed;
    session.currentTool.reset();
    session.pendingAgents = 0;
    session.stateChangedAt = now;
    return store(std::move(session));
}

SessionTransition SessionTransition::released(Session session) {
    const auto decisionID = session.pendingDecisionID();
    SessionTransition result = expired(std::move(session));
    if (decisionID) {
        result.resolution = Resolution{*decisionID, AgentDecision::ask()};
    }
    return result;
}

SessionTransition SessionTransition::restored(const std::optional<Session> &before,
                                              const DiscoveredSession &found, Date oldest,
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
