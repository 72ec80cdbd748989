#include "Presentation/Panel/UsageMilestoneStyle.h"

#include "Core/Usage/UsageMilestone.h"

namespace morvane::UsageMilestoneStyle {

static_assert(milestoneColors.size() == UsageMilestone::thresholds.size());

QColor color(double value) {
    for (auto place = milestoneColors.size(); place > 0; --place) {
        if (value >= UsageMilestone::thresholds[place - 1]) {
            return milestoneColors[place - 1];
        }
    }
    return nominal;
}

} // namespace morvane::UsageMilestoneStyle
