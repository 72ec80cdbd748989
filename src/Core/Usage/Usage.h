#pragma once

#include "Core/Usage/UsageMilestone.h"
#include "Platform/Time.h"

#include <QString>

#include <optional>

namespace morvane {

/// One limit of a subscription, as of when it was read.
struct UsageWindow {
    double utilization = 0; ///< the fraction that is used up, 0 to 1
    std::optional<Date> resetsAt;
    std::optional<int> durationMinutes; ///< only Codex tells

    /// True once its reset has passed: then the figure tells nothing of the window that has begun.
    bool isOver(Date now) const { return resetsAt && *resetsAt <= now; }

    /// None where no reset is known, and once it has passed.
    std::optional<Date> upcomingReset(Date now) const {
        return isOver(now) ? std::nullopt : resetsAt;
    }

    friend bool operator==(const UsageWindow &, const UsageWindow &) = default;
};

/// True from the first threshold at which the person is told.
inline bool isNearLimit(const std::optional<UsageWindow> &window) {
    return window && window->utilization >= UsageMilestone::thresholds.front();
}

/// What is used of Claude's limits.
struct Usage {
    std::optional<UsageWindow> session; ///< five hours
    std::optional<UsageWindow> weekly;  ///< seven days
    std::optional<UsageWindow> fable;   ///< seven days, of the largest models alone
    Date fetchedAt;
    Date fableReadAt{}; ///< for `fable`, which the status line leaves out

    friend bool operator==(const Usage &, const Usage &) = default;
};

/// What is used of Codex's limits.
struct CodexUsage {
    std::optional<UsageWindow> primary;   ///< the short window
    std::optional<UsageWindow> secondary; ///< the long one
    Date fetchedAt;
    std::optional<QString> planType; ///< as Codex names it

    friend bool operator==(const CodexUsage &, const CodexUsage &) = default;
};

} // namespace morvane
