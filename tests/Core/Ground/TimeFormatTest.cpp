#include "Core/Ground/TimeFormat.h"

#include "Support/Printing.h"

namespace morvane {
namespace {

TEST(TimeFormat, ShowsHowLongSomethingLastsAndHowLongItIsAway) {
    const Date now{std::chrono::seconds(1'700'000'000)};
    for (const auto &[seconds, text] : {std::pair(-5, "0s"), std::pair(59, "59s"),
                                        std::pair(60, "1m"), std::pair(7500, "2h05")}) {
        EXPECT_EQ(TimeFormat::elapsed(now, now + Seconds(seconds)), text);
    }
    for (const auto &[seconds, text] :
         {std::pair(-90, "0m"), std::pair(59, "0m"), std::pair(3599, "59m"), std::pair(3600, "1h"),
          std::pair(86399, "23h"), std::pair(3 * 86400, "3d")}) {
        EXPECT_EQ(TimeFormat::remaining(now + Seconds(seconds), now), text);
    }
}

TEST(TimeFormat, KnowsWhenAnAgeBecomesUntrue) {
    const Date start{std::chrono::seconds(1'700'000'000)};
    for (const double seconds :
         {-5.0, 0.0, 59.5, 60.0, 3599.0, 3600.0, 9000.0, 86399.0, 200'000.0}) {
        const Date now = start + Seconds(seconds);
        const Seconds change = TimeFormat::untilAgoChanges(start, now);
        const QString text = TimeFormat::ago(start, now);
        EXPECT_EQ(TimeFormat::ago(start, now + change - Seconds(0.01)), text);
        EXPECT_NE(TimeFormat::ago(start, now + change + Seconds(0.01)), text);
    }
}

} // namespace
} // namespace morvane
