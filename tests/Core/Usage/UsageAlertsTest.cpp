#include "Core/Usage/UsageAlerts.h"

#include "Core/Usage/Usage.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

const Date firstReset{std::chrono::seconds(2'000'000'000)};
const Date before = firstReset - Seconds(60);

UsageWindow window(double utilization, std::optional<Date> resetsAt = firstReset) {
    return {utilization, resetsAt, {}};
}

TEST(UsageAlerts, TellEachThresholdOnceUntilTheWindowBeginsAnew) {
    UsageAlerts alerts;
    const auto next = [&](double utilization, std::optional<Date> resetsAt = firstReset) {
        const auto told =
            alerts.nextMilestone({window(utilization, resetsAt), {}, {}, {}}, before, true);
        return told ? told->threshold : 0;
    };
    EXPECT_EQ(next(0.8499), 0);
    EXPECT_EQ(next(0.85), 0.85);
    EXPECT_EQ(next(0.89), 0);
    EXPECT_EQ(next(0.97), 0.95); // 0.90 is passed over
    EXPECT_EQ(next(0.92), 0);
    EXPECT_EQ(next(0.84), 0);
    EXPECT_EQ(next(0.92), 0.90);
    EXPECT_EQ(next(0.92, firstReset + Seconds(1)), 0.90);
    EXPECT_EQ(next(0.92, std::nullopt), 0); // a window without a date of its reset
}

TEST(UsageAlerts, TellTheHighestOfWhatIsReachedAtOnceAndSwallowTheRest) {
    UsageAlerts alerts;
    const auto next = [&](std::optional<UsageWindow> session, double weekly, double model) {
        return alerts.nextMilestone({session, window(weekly), window(model), {}}, before, true);
    };
    EXPECT_EQ(next(window(0.86), 0.86, 0.5), (UsageMilestone{UsageWindowKind::session, 0.85}));
    EXPECT_EQ(next(window(0.86), 0.86, 0.5), std::nullopt);
    EXPECT_EQ(next(window(0.90), 0.91, 0.96), (UsageMilestone{UsageWindowKind::model, 0.95}));
    EXPECT_EQ(next({}, 0.91, 0.96), std::nullopt);

    // Nothing is said of a window that is over.
    alerts = {};
    EXPECT_EQ(next(window(0.96, before), 0.86, 0), (UsageMilestone{UsageWindowKind::weekly, 0.85}));
    EXPECT_EQ(next(window(0.96), 0.86, 0), (UsageMilestone{UsageWindowKind::session, 0.95}));
    EXPECT_EQ(next(window(0.96, before), 0.86, 0), std::nullopt);
    EXPECT_EQ(next(window(0.96), 0.86, 0), std::nullopt);
}

} // namespace
} // namespace morvane
