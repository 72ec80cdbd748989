#include "Core/Sessions/SessionSummary.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"

namespace morvane {

SessionSummary SessionSummary::of(const Sessions &sessions) {
    SessionSummary result;
    result.aggregate = AggregateStatus::of(sessions);
    for (const Session &session : sessions) {
        const bool isWorking = session.state == SessionState::working;
        const bool waits = session.state == SessionState::needsInput && !session.acknowledged;
        result.hasPendingDecision |= session.pendingDecisionID().has_value();
        result.hasExternalPrompt |= session.pendingExternalResponse.has_value();
        result.hasUnacknowledgedNeedsInput |= waits;
        result.hasReportableSessions |= session.state != SessionState::idle;
        result.hasWorkingUsageMilestoneSession |=
            isWorking && AgentRegistry::adapter(session.agent).hasUsageMilestones();
    }
    return result;
}

} // namespace morvane
