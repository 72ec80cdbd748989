#pragma once

#include "Core/Sessions/AggregateStatus.h"
#include "Core/Sessions/Session.h"

namespace morvane {

/// What all sessions together come to.
struct SessionSummary {
    AggregateStatus aggregate;
    bool hasPendingDecision = false;
    bool hasExternalPrompt = false;
    bool hasUnacknowledgedNeedsInput = false;
    bool hasReportableSessions = false; ///< some session isn't idle
    /// Some session is working whose agent has usage milestones, so that one may be reached.
    bool hasWorkingUsageMilestoneSession = false;

    static SessionSummary of(const Sessions &sessions);
};

} // namespace morvane
