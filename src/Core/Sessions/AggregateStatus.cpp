#include "Core/Sessions/AggregateStatus.h"

#include <algorithm>
#include <array>

namespace morvane {

namespace {

/// When each candidate state was last entered, the strongest state first.
struct Candidates {
    std::optional<Date> needsInput;
    std::optional<Date> failedUnacked;
    std::optional<Date> doneUnacked;
    std::optional<Date> working;
    std::optional<Date> failed;
    std::optional<Date> done;
    std::optional<Date> idle;
};

void raise(std::optional<Date> &since, Date date) {
    since = std::max(since, std::optional(date));
}

void add(Candidates &candidates, const Session &session) {
    const Date since = session.stateChangedAt;
    switch (session.state) {
    case SessionState::needsInput:
        if (!session.acknowledged) {
            raise(candidates.needsInput, since);
        }
        break;
    case SessionState::failed:
        raise(candidates.failed, since);
        if (!session.acknowledged) {
            raise(candidates.failedUnacked, since);
        }
        break;
    case SessionState::done:
        raise(candidates.done, since);
        if (!session.acknowledged) {
            raise(candidates.doneUnacked, since);
        }
        break;
    case SessionState::working:
        raise(candidates.working, since);
        break;
    case SessionState::idle:
        raise(candidates.idle, since);
        break;
    }
}

} // namespace

AggregateStatus AggregateStatus::of(const Sessions &sessions) {
    if (sessions.isEmpty()) {
        return {};
    }
    Candidates candidates;
    for (const Session &session : sessions) {
        add(candidates, session);
    }
    const std::array precedence{
        AggregateStatus{SessionState::needsInput, candidates.needsInput},
        AggregateStatus{SessionState::failed, candidates.failedUnacked},
        AggregateStatus{SessionState::done, candidates.doneUnacked},
        AggregateStatus{SessionState::working, candidates.working},
        AggregateStatus{SessionState::failed, candidates.failed},
        AggregateStatus{SessionState::done, candidates.done},
    };
    const auto first = std::ranges::find_if(
        precedence, [](const AggregateStatus &status) { return status.since.has_value(); });
    return first != precedence.end() ? *first
                                     : AggregateStatus{SessionState::idle, candidates.idle};
}

} // namespace morvane
