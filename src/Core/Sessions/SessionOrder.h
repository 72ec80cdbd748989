#pragma once

#include "Core/Sessions/CompletedRecord.h"
#include "Core/Sessions/Session.h"
#include "Core/Sessions/SessionSlice.h"

#include <QList>

/// How the sessions and the history are listed. Pure functions; `SessionOverview` caches their
/// results.
namespace morvane::SessionOrder {

/// All sessions: by state, the one that waits for a person first, then the latest event first.
QList<Session> sorted(const Sessions &sessions);

/// The sessions that are working or wait for a person.
SessionSlice active(const QList<Session> &sorted);

/// The sessions that are anything but idle.
SessionSlice reportable(const QList<Session> &sorted);

/// The sessions that are idle: open, with nothing running and no result.
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

/// False if another session in the same tmux pane has had a later event: what is typed there goes
/// to that one.
bool hasItsPane(const Session &session, const Sessions &sessions);

/// True when live and finished sessions are of more than one agent, so that each row has to name
/// its agent. A record without an agent counts as Claude Code's.
bool showsAgentBadges(const Sessions &sessions, const QList<CompletedRecord> &history);

} // namespace morvane::SessionOrder
