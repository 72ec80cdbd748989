#include "Core/Usage/UsageFormat.h"

#include "Support/Printing.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace morvane {
namespace {

const Date readAt{std::chrono::seconds(1'700'000'000)};

std::optional<Date> at(double seconds) {
    return Date{} + Seconds(seconds);
}

using Percents = std::array<int, 3>;
constexpr Percents unreadable{-2, -2, -2};

/// Percents of the windows in the order session, weekly, model; -1 for one that is absent.
Percents percents(const std::optional<Usage> &usage) {
    const auto percent = [](const std::optional<UsageWindow> &window) {
        return window ? static_cast<int>(window->utilization * 100 + 0.5) : -1;
    };
    return usage ? Percents{percent(usage->session), percent(usage->weekly), percent(usage->fable)}
                 : unreadable;
}

TEST(UsageFormat, ReadsWhatTheEndpointTells) {
    const auto read = [](const QByteArray &body) {
        return percents(UsageFormat::parse(body, readAt));
    };
    EXPECT_EQ(read(R"({"five_hour":{"utilization":42.4},"seven_day":{"percent":7},"x":[1]})"),
              (Percents{42, 7, -1}));
    EXPECT_EQ(read(R"({"five_hour":{"utilization":"9","used_percentage":140},
                       "seven_day":{"utilization":-3}})"),
              (Percents{100, 0, -1}));
    // The first limit of a large model that can be read counts, whatever stands beside the list.
    EXPECT_EQ(read(R"({"five_hour":{"utilization":1},"seven_day_opus":{"utilization":4},"limits":[
        {"kind":"weekly","scope":{"model":{"display_name":"Opus"}},"utilization":2},
        {"kind":"weekly_scoped","scope":null,"utilization":2},
        {"kind":"weekly_scoped","scope":{"model":{"display_name":"Sonnet"}},"utilization":2},
        {"kind":"weekly_scoped","scope":{"model":{"display_name":"Claude OPUS"}}},
        {"kind":"weekly_scoped","scope":{"model":{"display_name":"Mythos"}},"percent":3}]})"),
              (Percents{1, -1, 3}));
    EXPECT_EQ(read(R"({"seven_day":{"utilization":1},"limits":["x",
        {"kind":"weekly_scoped","scope":{"model":{"display_name":"Opus"}},"utilization":2}],
        "seven_day_OPUS":{"utilization":4},"seven_day_sonnet":{"utilization":5}})"),
              (Percents{-1, 1, 4}));
    for (const char *body : {"[]", "<html>", R"({"five_hour":{"utilization":null}})",
                             R"({"five_hour":[5]})", R"({"seven_day_opus":{"utilization":4}})"}) {
        EXPECT_EQ(read(body), unreadable) << body;
    }
}

TEST(UsageFormat, ReadsTheLimitsOfAStatusLine) {
    const auto read = [](const QByteArray &body) {
        return percents(UsageFormat::parseLive(body, readAt));
    };
    EXPECT_EQ(read(R"({"model":{},"rate_limits":{"five_hour":{"used_percentage":12.5},
        "seven_day":{"used_percentage":61},"seven_day_opus":{"used_percentage":3}}})"),
              (Percents{13, 61, -1}));
    EXPECT_EQ(read(R"({"rate_limits":{"five_hour":{"used_percentage":12}}})"),
              (Percents{12, -1, -1}));
    EXPECT_EQ(read(R"({"five_hour":{"used_percentage":12}})"), unreadable);
}

TEST(UsageFormat, ReadsMomentsAndNothingThatCouldBeAnother) {
    const auto read = [](const QJsonValue &value) { return UsageFormat::date(value); };
    EXPECT_EQ(read(1'762'232'400), at(1'762'232'400));
    EXPECT_EQ(read(1'762'232'400'500.0), at(1'762'232'400.5));
    EXPECT_EQ(read("2025-11-04T05:00:00Z"), at(1'762'232'400));
    EXPECT_EQ(read("2025-11-04T06:00:00.25+01:00"), at(1'762'232'400.25));
    EXPECT_EQ(read("2025-11-04T04:59:59.943648+00:00"), at(1'762'232'399.944));
    for (const QJsonValue &value :
         {QJsonValue(0), QJsonValue(1e12), QJsonValue(1e300), QJsonValue(true),
          QJsonValue("1762232400"), QJsonValue("2025-11-04T05:00:00"),
          QJsonValue("2025-13-04T05:00:00Z"), QJsonValue("9999-12-31T23:59:59Z")}) {
        EXPECT_EQ(read(value), std::nullopt) << QJsonDocument({{"v", value}}).toJson().data();
    }
}

TEST(UsageFormat, ReadsCodexsAnswer) {
    const auto usage = UsageFormat::parseCodex(
        R"({"id":2,"result":{"rateLimits":{"primary":{"windowDurationMins":300},
        "secondary":{"usedPercent":31.5,"windowDurationMins":10080.9,"resetsAt":1762232400},
        "planType":"plus"}}})",
        readAt);
    ASSERT_TRUE(usage);
    EXPECT_EQ(*usage,
              (CodexUsage{{}, UsageWindow{0.315, at(1'762'232'400), 10080}, readAt, "plus"}));
    const auto ugly = UsageFormat::parseCodex(
        R"({"result":{"rateLimits":{"primary":{"usedPercent":1e9,"windowDurationMins":1e300},
        "planType":7}}})",
        readAt);
    ASSERT_TRUE(ugly);
    EXPECT_EQ(*ugly, (CodexUsage{UsageWindow{1, {}, {}}, {}, readAt, {}}));
    EXPECT_FALSE(UsageFormat::parseCodex(R"({"id":2,"error":{"code":-32600}})", readAt));
    EXPECT_FALSE(UsageFormat::parseCodex(
        R"({"result":{"rateLimits":{"primary":{"usedPercent":"3"},"secondary":null}}})", readAt));
}

} // namespace
} // namespace morvane
