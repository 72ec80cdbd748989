#include "Core/Sessions/HookContext.h"

#include <utility>

namespace morvane {

namespace {

void takeWorkingDirectory(Session &session, const HookContext &context) {
    const auto &cwd = context.event.cwd;
    if (cwd && !cwd->isEmpty() && *cwd != session.cwd) {
        session.cwd = *cwd;
        session.gitBranch = context.surroundings.gitBranch(*cwd);
        session.customName = context.surroundings.customName(*cwd);
    }
}

/// Takes what the event tells of a field; an event that tells nothing leaves it as it is. Returns
/// true when the field has changed.
template <typename Value>
bool take(std::optional<Value> &field, const std::optional<Value> &told) {
    if (!told || field == told) {
        return false;
    }
    field = told;
    return true;
}

void takeHost(Session &session, const HookContext &context) {
    const HookEvent &event = context.event;
    const bool sessionIDChanged = take(session.itermSessionID, event.itermSessionID);
    const bool programChanged = take(session.termProgram, event.termProgram);
    const bool bundleChanged = take(session.hostBundleID, event.hostBundleID);
    take(session.ttyName, event.ttyName);
    take(session.process, event.process);
    if (event.pane.locatesPane()) {
        session.pane = event.pane;
    }
    if (sessionIDChanged || programChanged || bundleChanged) {
        session.hostAppName =
            context.surroundings.hostAppName(session.hostBundleID, session.termProgram);
    }
}

} // namespace

Session HookContext::makeSession(SessionState state) const {
    Session session;
    session.id = event.sessionID;
    session.agent = event.agent;
    session.state = state;
    session.cwd = event.cwd.value_or(QString());
    session.itermSessionID = event.itermSessionID;
    session.termProgram = event.termProgram;
    session.hostBundleID = event.hostBundleID;
    session.ttyName = event.ttyName;
    session.hostAppName = surroundings.hostAppName(event.hostBundleID, event.termProgram);
    session.startedAt = now;
    session.gitBranch = surroundings.gitBranch(session.cwd);
    session.customName = surroundings.customName(session.cwd);
    return session;
}

Session HookContext::lookUpOrMake(SessionState initial) const {
    return before ? *before : makeSession(initial);
}

SessionTransition HookContext::touch(Session &&session) const {
    if (!before || before->state != session.state) {
        session.stateChangedAt = now;
    }
    if (session.isAtWork() && !wasAtWork()) {
        session.atWorkSince = now;
    }
    session.lastEventAt = now;
    return SessionTransition::store(std::move(session));
}

SessionTransition HookContext::update(Session &&session) const {
    if (event.asksForSubagent) {
        if (!session.process) {
            takeHost(session, *this);
        }
        return touch(std::move(session));
    }
    takeWorkingDirectory(session, *this);
    session.agent = event.agent;
    session.endsTurnsInTranscript = event.endsTurnsInTranscript;
    session.titlesLag = event.titlesLag;
    takeHost(session, *this);
    take(session.transcriptPath, event.transcriptPath);
    return touch(std::move(session));
}

} // namespace morvane
