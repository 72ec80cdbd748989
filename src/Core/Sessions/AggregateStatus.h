#pragma once

#include "Core/Sessions/Session.h"

namespace morvane {

/// The one status to which all sessions together collapse. A prompt, failure or finish that
/// nobody has seen outranks running work; running work outranks a result that has been seen.
struct AggregateStatus {
    std::optional<SessionState> state; ///< none when there is no session
    std::optional<Date> since;         ///< the latest `stateChangedAt` of the sessions that give it

    static AggregateStatus of(const Sessions &sessions);

    friend bool operator==(const AggregateStatus &, const AggregateStatus &) = default;
};

} // namespace morvane
