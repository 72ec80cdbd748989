#pragma once

#include "Core/Usage/UsageMilestone.h"
#include "Platform/Time.h"

#include <QString>

#include <map>
#include <optional>

namespace morvane {

struct Usage;

/// Decides which milestone to tell next: each once until its window resets. What was told is
/// forgotten at the end of the program. Main thread.
class UsageAlerts {
public:
    /// The thresholds for a person, each with the unit behind it.
    static QString percents(const QString &separator, const QString &unit = {});

    /// The milestone to tell for these figures. It counts as told from now on, and so do lower ones
    /// and those that other windows have reached with it. Without `eligible` there is none, and
    /// what is reached waits. Windows that are over count as absent.
    std::optional<UsageMilestone> nextMilestone(const Usage &usage, Date now, bool eligible);

private:
    void rearm(const Usage &usage, Date now);

    std::map<UsageWindowKind, double> m_announced; ///< the highest threshold told since the reset
    std::map<UsageWindowKind, Date> m_knownReset;
};

} // namespace morvane
