#include "Core/Usage/UsageMilestones.h"

#include "Core/Usage/Usage.h"
#include "Platform/Scheduler.h"

#include <utility>

namespace morvane {

namespace {

constexpr Seconds milestoneShownFor(6);

} // namespace

UsageMilestones::UsageMilestones(Scheduler &scheduler, std::function<bool()> milestoneEligibility)
    : m_scheduler(scheduler), m_milestoneEligibility(std::move(milestoneEligibility)) {}

void UsageMilestones::evaluateMilestones(const Usage &usage) {
    const auto milestone = m_alerts.nextMilestone(usage, m_scheduler.now(), areEligible());
    if (!milestone) {
        return;
    }
    m_activeMilestone = milestone;
    m_milestoneDismissTask = m_scheduler.after(milestoneShownFor, [this] {
        m_activeMilestone.reset();
        emit dismissed();
    });
    emit reached(*milestone);
}

void UsageMilestones::clearMilestone() {
    m_milestoneDismissTask.cancel();
    m_activeMilestone.reset();
}

} // namespace morvane

#include "moc_UsageMilestones.cpp"
