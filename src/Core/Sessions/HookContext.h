#pragma once

#include "Core/Intake/HookEvent.h"
#include "Core/Sessions/Session.h"
#include "Core/Sessions/SessionTransition.h"
#include "Platform/Time.h"

namespace morvane {

/// A hook's event and everything else that its rule depends on. Lives as long as one rule runs.
struct HookContext {
    const Session *before; ///< null where there is none
    const HookEvent &event;
    Date now;
    const SessionSurroundings &surroundings;

    Session makeSession(SessionState state) const;

    /// A copy of the session as it was; where there is none, a new one in the given state.
    Session lookUpOrMake(SessionState initial) const;

    bool wasAtWork() const { return before && before->isAtWork(); }

    /// Stores the session with updated dates, and nothing else of what the event tells.
    SessionTransition touch(Session &&session) const;

    /// The end of nearly every hook's rule: takes what the event tells besides its kind, and
    /// updates the dates. A subagent's surroundings aren't the session's, so they are taken only if
    /// no others are known.
    SessionTransition update(Session &&session) const;
};

} // namespace morvane
