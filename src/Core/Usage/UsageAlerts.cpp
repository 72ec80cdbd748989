#include "Core/Usage/UsageAlerts.h"

#include "Core/Usage/Usage.h"

#include <QStringList>

#include <array>
#include <utility>

namespace morvane {

namespace {

constexpr double lowestThreshold = UsageMilestone::thresholds.front();

/// Calls `visit` with each window that is present and still runs, in the order of their kinds.
template <typename Visit>
void forEachWindow(const Usage &usage, Date now, Visit visit) {
    const std::array<std::pair<UsageWindowKind, const std::optional<UsageWindow> &>, 3> windows{
        {{UsageWindowKind::session, usage.session},
         {UsageWindowKind::weekly, usage.weekly},
         {UsageWindowKind::model, usage.fable}}};
    for (const auto &[kind, window] : windows) {
        if (window && !window->isOver(now)) {
            visit(kind, *window);
        }
    }
}

std::optional<double> highestReached(double utilization) {
    std::optional<double> result;
    for (const double threshold : UsageMilestone::thresholds) {
        if (threshold <= utilization) {
            result = threshold;
        }
    }
    return result;
}

} // namespace

QString UsageAlerts::percents(const QString &separator, const QString &unit) {
    QStringList result;
    for (const double threshold : UsageMilestone::thresholds) {
        result << QString::number(UsageMilestone{.threshold = threshold}.percent()) + unit;
    }
    return result.join(separator);
}

/// A window begins anew when it names another reset, and otherwise when its figure has fallen below
/// all thresholds.
void UsageAlerts::rearm(const Usage &usage, Date now) {
    forEachWindow(usage, now, [this](UsageWindowKind kind, const UsageWindow &window) {
        const auto known = m_knownReset.find(kind);
        if (window.resetsAt && (known == m_knownReset.end() || known->second != *window.resetsAt)) {
            m_knownReset.insert_or_assign(kind, *window.resetsAt);
            m_announced.erase(kind);
        } else if (window.utilization < lowestThreshold) {
            m_announced.erase(kind);
        }
    });
}

std::optional<UsageMilestone> UsageAlerts::nextMilestone(const Usage &usage, Date now,
                                                         bool eligible) {
    rearm(usage, now);
    std::optional<UsageMilestone> winner;
    if (!eligible) {
        return winner;
    }
    forEachWindow(usage, now, [&](UsageWindowKind kind, const UsageWindow &window) {
        const auto threshold = highestReached(window.utilization);
        const auto announced = m_announced.find(kind);
        if (!threshold || (announced != m_announced.end() && announced->second >= *threshold)) {
            return;
        }
        // One chime is enough for all that is reached at once.
        m_announced.insert_or_assign(kind, *threshold);
        if (!winner || *threshold > winner->threshold) {
            winner = UsageMilestone{kind, *threshold};
        }
    });
    return winner;
}

} // namespace morvane
