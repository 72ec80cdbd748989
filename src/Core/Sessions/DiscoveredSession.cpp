#include "Core/Sessions/DiscoveredSession.h"

#include "Core/Sessions/Session.h"

namespace morvane {

Session DiscoveredSession::session() const {
    Session session;
    session.id = id;
    session.agent = agent;
    session.cwd = cwd;
    session.transcriptPath = transcriptPath;
    session.startedAt = lastActive;
    session.lastEventAt = lastActive;
    session.stateChangedAt = lastActive;
    session.gitBranch = gitBranch;
    return session;
}

} // namespace morvane
