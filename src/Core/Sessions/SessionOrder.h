#pragma once

#include "Core/Sessions/CompletedRecord.h"
#include "Core/Sessions/Session.h"
#include "Core/Sessions/SessionSlice.h"

#include <QList>

/// How the sessions and the history are listed. Pure functions; `SessionOverview` holds on to what
/// they give.
namespace morvane::SessionOrder {

/// All sessions: by state, the one that waits for a person first, then the latest event first.
QList<Session> sorted(const Sessions &sessions);

/// The sessions that are working or wait for a person.
SessionSlice active(const QList<Session> &sorted);

/// The sessions that are anything but idle.
SessionSlice reportable(const QList<Session> &sorted);

/// The sessions that are idle: open, with no activity yet.
SessionSlice open(const QList<Session> &sorted);

/// The finished sessions that are on offer: the first few of the history.
QList<CompletedRecord> jumpable(const QList<CompletedRecord> &history);

/// The finished sessions on offer whose live session is still there.
QList<CompletedRecord> recentlyCompleted(const QList<CompletedRecord> &jumpable,
                                         const Sessions &sessions);

/// The finished sessions on offer whose live session is gone.
QList<CompletedRecord> archived(const QList<CompletedRecord> &jumpable, const Sessions &sessions);

/// The session that has finished in the record's folder and pane; the latest of several.
std::optional<Session> finishedSession(const CompletedRecord &record, const Sessions &sessions);

/// False for a session in whose tmux pane another one has been heard of since: what is typed there
/// goes to the other.
bool hasItsPane(const Session &session, const Sessions &sessions);

/// True when live and finished sessions are of more than one agent, so that each row has to say
/// whose it is. A record that names no agent is Claude Code's.
bool showsAgentBadges(const Sessions &sessions, const QList<CompletedRecord> &history);

} // namespace morvane::SessionOrder
