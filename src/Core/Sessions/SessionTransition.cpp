#include "Core/Sessions/SessionTransition.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Agents/HookTimeout.h"
#include "Core/Sessions/HookContext.h"
#include "Core/Sessions/PendingRequest.h"

#include <algorithm>

namespace morvane {

namespace {

/// True for an agent that lists at a turn's end which subagents still run, and so reports itself
/// when all are done.
bool listsSubagents(const HookEvent &event) {
    return AgentRegistry::adapter(event.agent).reportsBackgroundTasks();
}

bool isAskedBySubagent(const Session &session) {
    return !session.pendingSubagent.isEmpty();
}

/// Whether the pending call still waits after this event. A late announcement of that very call was
/// made before the wait began; and if the terminal asks only after the hook, nothing else that its
/// asker does is an answer.
bool waitsOn(const Session &session, const HookEvent &event) {
    if (!session.pendingDecisionID()) {
        return false;
    }
    const bool isLate =
        !event.callDigest.isEmpty() && event.callDigest == session.pendingCallDigest;
    return isLate ||
           (event.asksAfterHook && event.agentID.value_or(QString()) == session.pendingSubagent);
}

SessionTransition sessionStart(const HookContext &context) {
    Session session = context.lookUpOrMake(SessionState::idle);
    if (context.event.isCompaction && session.isAtWork()) {
        return context.update(std::move(session));
    }
    // The start may be the only sign of an interruption, which doesn't end a subagent's request,
    // here or in the terminal.
    session.askers.remove(QString());
    const bool asksThere =
        session.isAtWork() && !listsSubagents(context.event) && !session.askers.isEmpty();
    if (asksThere || isAskedBySubagent(session)) {
        session.subagentGoesOn = true;
        return context.update(std::move(session));
    }
    session.state = SessionState::idle;
    session.acknowledged = true;
    session.pendingExternalResponse.reset();
    return context.update(std::move(session));
}

SessionTransition promptSubmit(const HookContext &context) {
    Session session = context.lookUpOrMake(SessionState::working);
    session.state = SessionState::working;
    session.acknowledged = true;
    session.currentTool.reset();
    // When a person prompts, no request is left on the screen. But an agent also prompts itself,
    // with a subagent's result.
    if (context.event.prompt) {
        session.askers.clear();
        session.lastPrompt = context.event.prompt;
    } else {
        session.askers.remove(QString());
    }
    session.pendingExternalResponse.reset();
    session.atWorkSince = context.now;
    session.subagents.clear();
    session.subagentGoesOn = false;
    session.pendingAgents = 0;
    session.summary.reset();
    // A new turn restarts the clock, whether or not the session was working before.
    session.stateChangedAt = context.now;
    return context.update(std::move(session));
}

SessionTransition toolUse(const HookContext &context) {
    const HookEvent &event = context.event;
    Session session = context.lookUpOrMake(SessionState::working);
    if (!waitsOn(session, event)) {
        session.askers.remove(QString());
        session.subagentGoesOn = false;
        if (!event.asksAfterHook || !session.pendingDecisionID()) {
            session.state = SessionState::working;
            session.pendingExternalResponse.reset();
        }
    }
    session.currentTool = event.toolName;
    if (event.launchesSubagent) {
        session.subagents.append({QUuid::createUuid(),
                                  event.taskDescription.value_or(SessionTransition::tr("subagent")),
                                  false});
    }
    SessionTransition result = context.update(std::move(session));
    result.readsTranscript = true;
    return result;
}

/// A subagent that had asked goes on, so it has been answered in the terminal. As with the
/// session's own calls, a pending decision stays: this tool may run beside the one that waits.
SessionTransition subagentToolUse(const HookContext &context) {
    if (!context.before || waitsOn(*context.before, context.event)) {
        return {};
    }
    Session session = *context.before;
    SessionTransition::settle(session, *context.event.agentID);
    return context.touch(std::move(session));
}

/// A prompt that has to be answered in the agent's own terminal. `external` is what is known of it;
/// without it, the event is the agent's plain notice that it waits.
SessionTransition markNeedsInput(const HookContext &context,
                                 const std::optional<PendingExternalResponse> &external) {
    Session session = context.lookUpOrMake(SessionState::needsInput);
    session.state = SessionState::needsInput;
    session.acknowledged = false;
    const auto parked = session.pendingDecisionID();
    // The plain notice also follows an agent's own permission request, which still waits here and
    // must not be disturbed.
    if (parked && !external) {
        return context.update(std::move(session));
    }
    // The notice doesn't say who asks, and may be about a request that is known already.
    if (session.askers.isEmpty()) {
        session.askers.insert(context.event.agentID.value_or(QString()));
    }
    SessionTransition::forgetDecision(session);
    session.pendingExternalResponse = external.value_or(PendingExternalResponse{
        context.event.questions.value_or(QList<AgentQuestion>()), context.event.responseMessage});
    SessionTransition result = context.update(std::move(session));
    if (parked) {
        result.releases.append(*parked);
    }
    return result;
}

SessionTransition idle(const HookContext &context) {
    if (!context.before) {
        return context.update(context.makeSession(SessionState::idle));
    }
    Session session = *context.before;
    // The end of a background agent answers nothing that waits for a person.
    const bool waits = session.pendingDecisionID() ||
                       (context.event.isOfBackground && session.state == SessionState::needsInput);
    if (!session.isAtWork() || session.pendingAgents != 0 || waits) {
        return {};
    }
    session.state = SessionState::done;
    session.acknowledged = false;
    session.currentTool.reset();
    session.pendingExternalResponse.reset();
    return context.update(std::move(session));
}

/// Takes the agent's last words, if the event brings them or says that there are none.
void takeLastWords(Session &session, const HookEvent &event) {
    if (event.lastWords) {
        session.summary = event.lastWords->isEmpty() ? std::nullopt : event.lastWords;
    }
}

SessionTransition turnEnd(const HookContext &context) {
    Session session = context.lookUpOrMake(SessionState::done);
    session.currentTool.reset();
    session.askers.remove(QString());
    session.pendingExternalResponse.reset();
    session.pendingAgents = context.event.pendingAgents().size();
    const bool finished = session.pendingAgents == 0;
    const bool asksThere = !listsSubagents(context.event) && !session.askers.isEmpty();
    session.subagentGoesOn = finished && (asksThere || isAskedBySubagent(session));
    if (finished) {
        takeLastWords(session, context.event);
    }
    if (isAskedBySubagent(session)) {
        return context.update(std::move(session));
    }
    if (!finished || session.subagentGoesOn) {
        // The turn is over for the agent, not for the person.
        session.state = session.askers.isEmpty() ? SessionState::working : SessionState::needsInput;
        session.acknowledged = session.askers.isEmpty();
    } else {
        session.state = SessionState::done;
        session.acknowledged = false;
        std::ranges::for_each(session.subagents, [](Subagent &subagent) { subagent.done = true; });
    }
    return context.update(std::move(session));
}

SessionTransition turnFailed(const HookContext &context) {
    Session session = context.lookUpOrMake(SessionState::failed);
    session.state = SessionState::failed;
    session.acknowledged = false;
    session.currentTool.reset();
    session.pendingAgents = 0;
    session.pendingExternalResponse.reset();
    takeLastWords(session, context.event);
    return context.update(std::move(session));
}

/// Stores without `update`: what a subagent tells of its surroundings isn't the session's.
SessionTransition subagentStop(const HookContext &context) {
    if (!context.before) {
        return {};
    }
    Session session = *context.before;
    const auto open = std::ranges::find(session.subagents, false, &Subagent::done);
    if (open != session.subagents.end()) {
        open->done = true;
    }
    SessionTransition::endSubagent(session, context.event.agentID.value_or(QString()));
    return context.touch(std::move(session));
}

SessionTransition sessionEnd(const HookContext &context) {
    if (!context.before) {
        return {};
    }
    return {SessionTransition::Write::remove, *context.before, {}, false};
}

void setPending(Session &session, const HookContext &context, const QString &decisionID) {
    const HookEvent &event = context.event;
    const Date expiresAt = context.now + decisionLimit;
    SessionTransition::forgetDecision(session);
    session.pendingExternalResponse.reset();
    session.pendingCallDigest = event.callDigest;
    session.pendingSubagent = event.agentID.value_or(QString());
    if (event.questions) {
        session.pendingQuestion = PendingRequest::question(event, decisionID, expiresAt);
    } else {
        session.pendingApproval = PendingRequest::approval(event, decisionID, expiresAt);
    }
}

SessionTransition ask(const HookContext &context) {
    const HookEvent &event = context.event;
    if (!event.decisionID) {
        return markNeedsInput(context, std::nullopt);
    }
    if (!PendingRequest::isAnswerableHere(event)) {
        SessionTransition result = markNeedsInput(
            context, PendingExternalResponse{event.questions.value_or(QList<AgentQuestion>()),
                                             event.responseMessage});
        result.releases.prepend(*event.decisionID);
        return result;
    }
    Session session = context.lookUpOrMake(SessionState::needsInput);
    const auto superseded = session.pendingDecisionID();
    session.state = SessionState::needsInput;
    session.acknowledged = false;
    setPending(session, context, *event.decisionID);
    SessionTransition result = context.update(std::move(session));
    if (superseded && superseded != event.decisionID) {
        result.releases.append(*superseded);
    }
    return result;
}

/// Whether the session's own turn is over, as far as can be told. A turn may run unnoticed; an
/// agent that lists its subagents reports the end of them all, so only that counts there.
bool isTurnOver(const HookContext &context) {
    const auto &before = context.before;
    return listsSubagents(context.event) ? before && before->isFinished() : !context.wasAtWork();
}

/// Whoever asked before and was superseded by this still waits, in the terminal.
SessionTransition permissionRequest(const HookContext &context) {
    SessionTransition result = ask(context);
    result.session.askers.insert(context.event.agentID.value_or(QString()));
    result.session.subagentGoesOn |= context.event.asksForSubagent && isTurnOver(context);
    return result;
}

} // namespace

SessionTransition SessionTransition::of(const Session *before, const HookEvent &event, Date now,
                                        const SessionSurroundings &surroundings) {
    const HookContext context{before, event, now, surroundings};
    switch (event.kind) {
    case CanonicalEvent::sessionStart:
        return sessionStart(context);
    case CanonicalEvent::promptSubmit:
        return promptSubmit(context);
    case CanonicalEvent::toolUse:
        return event.agentID ? subagentToolUse(context) : toolUse(context);
    case CanonicalEvent::needsInput:
        return markNeedsInput(context, std::nullopt);
    case CanonicalEvent::idle:
        return idle(context);
    case CanonicalEvent::turnEnd:
        return turnEnd(context);
    case CanonicalEvent::turnFailed:
        return turnFailed(context);
    case CanonicalEvent::subagentStop:
        return subagentStop(context);
    case CanonicalEvent::sessionEnd:
        return sessionEnd(context);
    case CanonicalEvent::permissionRequest:
        return permissionRequest(context);
    }
    return {};
}

bool SessionTransition::endsPendingDecision(const Session &session, const HookEvent &event) {
    switch (event.kind) {
    case CanonicalEvent::promptSubmit:
    case CanonicalEvent::turnFailed:
    case CanonicalEvent::sessionEnd:
        return true;
    case CanonicalEvent::turnEnd:
        return !isAskedBySubagent(session);
    case CanonicalEvent::subagentStop:
        return isAskedBySubagent(session) && event.agentID == session.pendingSubagent;
    default:
        return false;
    }
}

bool SessionTransition::concernsSession(const Session *before, const HookEvent &event) {
    switch (event.kind) {
    case CanonicalEvent::subagentStop:
        return true;
    case CanonicalEvent::permissionRequest:
        return event.asksForSubagent;
    case CanonicalEvent::toolUse:
        return before && before->askers.contains(event.agentID.value_or(QString()));
    default:
        return false;
    }
}

} // namespace morvane
