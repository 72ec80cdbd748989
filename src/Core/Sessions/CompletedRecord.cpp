#include "Core/Sessions/CompletedRecord.h"

#include "Core/Sessions/Session.h"

namespace morvane {

QString CompletedRecord::idFor(const Session &session) {
    return session.cwd.isEmpty() ? session.id : session.cwd;
}

CompletedRecord CompletedRecord::of(const Session &session, Date finishedAt) {
    CompletedRecord record;
    record.id = idFor(session);
    record.name = session.displayName();
    record.cwd = session.cwd;
    record.gitBranch = session.gitBranch;
    record.itermSessionID = session.itermSessionID;
    record.termProgram = session.termProgram;
    record.hostBundleID = session.hostBundleID;
    record.finishedAt = finishedAt;
    record.lastPrompt = session.lastPrompt;
    record.summary = session.summary;
    record.agent = session.agent;
    record.hostAppName = session.hostAppName;
    record.failed = session.state == SessionState::failed;
    if (session.pane.locatesPane()) {
        record.pane = session.pane;
    }
    record.ttyName = session.ttyName;
    return record;
}

} // namespace morvane
