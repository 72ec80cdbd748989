#pragma once

#include "Core/Usage/UsageAlerts.h"
#include "Platform/Task.h"

#include <QObject>

#include <functional>
#include <optional>

namespace morvane {

class Scheduler;
struct Usage;

/// Shows each milestone of Claude's limits for six seconds, while there is work for which one is
/// worth telling. Owned by `UsagePoller`; main thread.
class UsageMilestones : public QObject {
    Q_OBJECT

public:
    /// `milestoneEligibility` tells of such work. The scheduler outlives the milestones.
    UsageMilestones(Scheduler &scheduler, std::function<bool()> milestoneEligibility);

    /// The milestone to show now, if any.
    const std::optional<UsageMilestone> &activeMilestone() const { return m_activeMilestone; }

    bool areEligible() const { return m_milestoneEligibility(); }

    /// Shows the milestone that these figures have newly reached, if any.
    void evaluateMilestones(const Usage &usage);

    void clearMilestone();

signals:
    /// Sent once for each milestone.
    void reached(const morvane::UsageMilestone &milestone);

    /// The milestone has been shown for long enough.
    void dismissed();

private:
    Scheduler &m_scheduler;
    const std::function<bool()> m_milestoneEligibility;
    UsageAlerts m_alerts;
    std::optional<UsageMilestone> m_activeMilestone;
    Task m_milestoneDismissTask;
};

} // namespace morvane
