#include "Core/Usage/UsageAlerts.h"

#include "Core/Usage/Usage.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

const Date firstReset{std::chrono::seconds(2'000'000'000)};

UsageWindow window(double utilization, std::optional<Date> resetsAt = firstReset) {
    return {utilization, resetsAt, {}};
}

/// Windows in the order session, weekly, model.
Usage windows(std::optional<UsageWindow> first, std::optional<UsageWindow> second = {},
              std::optional<UsageWindow> third = {}) {
    return {first, second, third, Date{}};
}

std::optional<UsageMilestone> milestone(UsageWindowKind kind, double threshold) {
    return UsageMilestone{kind, threshold};
}

TEST(UsageAlerts, TellEachThresholdOnceUntilTheWindowBeginsAnew) {
    UsageAlerts alerts;
    const auto next = [&](double utilization, std::optional<Date> resetsAt = firstReset) {
        return alerts.nextMilestone(windows(window(utilization, resetsAt)), true);
    };
    EXPECT_EQ(next(0.8499), std::nullopt);
    EXPECT_EQ(next(0.85), milestone(UsageWindowKind::session, 0.85));
    EXPECT_EQ(next(0.89), std::nullopt);
    EXPECT_EQ(next(0.97),
              milestone(UsageWindowKind::session, 0.95)); // 0.90 is passed over for good
    EXPECT_EQ(next(0.92), std::nullopt);
    EXPECT_EQ(next(0.84), std::nullopt);
    EXPECT_EQ(next(0.92), milestone(UsageWindowKind::session, 0.90));
    EXPECT_EQ(next(0.92, firstReset + Seconds(1)), milestone(UsageWindowKind::session, 0.90));
    EXPECT_EQ(next(0.92, std::nullopt), std::nullopt); // that tells of no reset
}

TEST(UsageAlerts, TellTheHighestOfWhatIsReachedAtOnceAndSwallowTheRest) {
    UsageAlerts alerts;
    EXPECT_EQ(alerts.nextMilestone(windows(window(0.86), window(0.86), window(0.5)), true),
              milestone(UsageWindowKind::session, 0.85));
    EXPECT_EQ(alerts.nextMilestone(windows(window(0.86), window(0.86), window(0.5)), true),
              std::nullopt);
    EXPECT_EQ(alerts.nextMilestone(windows(window(0.90), window(0.91), window(0.96)), true),
              milestone(UsageWindowKind::model, 0.95));
    EXPECT_EQ(alerts.nextMilestone(windows({}, window(0.91), window(0.96)), true), std::nullopt);
}

TEST(UsageAlerts, KeepWhatIsReachedWhileNobodyWorks) {
    UsageAlerts alerts;
    EXPECT_EQ(alerts.nextMilestone(windows({}, window(0.96)), false), std::nullopt);
    EXPECT_EQ(alerts.nextMilestone(windows({}, window(0.96)), true),
              milestone(UsageWindowKind::weekly, 0.95));
}

} // namespace
} // namespace morvane
