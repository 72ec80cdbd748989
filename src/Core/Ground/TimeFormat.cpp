#include "Core/Ground/TimeFormat.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace morvane::TimeFormat {

namespace {

struct TimeTexts {
    Q_DECLARE_TR_FUNCTIONS(TimeFormat)
};

/// Whole seconds between the two, at least 0.
std::int64_t secondsBetween(Date earlier, Date later) {
    using namespace std::chrono;
    return std::max<std::int64_t>(duration_cast<seconds>(later - earlier).count(), 0);
}

} // namespace

QString elapsed(Date since, Date asOf) {
    const std::int64_t total = secondsBetween(since, asOf);
    if (total < 60) {
        return TimeTexts::tr("%1s").arg(total);
    }
    if (total < 3600) {
        return TimeTexts::tr("%1m").arg(total / 60);
    }
    return TimeTexts::tr("%1h%2").arg(total / 3600).arg(total % 3600 / 60, 2, 10, QLatin1Char('0'));
}

QString ago(Date date, Date from) {
    const std::int64_t total = secondsBetween(date, from);
    if (total < 60) {
        return TimeTexts::tr("just now");
    }
    if (total < 3600) {
        return TimeTexts::tr("%1m ago").arg(total / 60);
    }
    if (total < 86400) {
        return TimeTexts::tr("%1h ago").arg(total / 3600);
    }
    return TimeTexts::tr("%1d ago").arg(total / 86400);
}

QString remaining(Date until, Date from) {
    const std::int64_t total = secondsBetween(from, until);
    if (total < 3600) {
        return TimeTexts::tr("%1m").arg(total / 60);
    }
    if (total < 86400) {
        return TimeTexts::tr("%1h").arg(total / 3600);
    }
    return TimeTexts::tr("%1d").arg(total / 86400);
}

Seconds untilAgoChanges(Date date, Date from) {
    const double passed = Seconds(from - date).count();
    const double unit = passed < 3600 ? 60 : passed < 86400 ? 3600 : 86400;
    return Seconds(passed < 0 ? unit - passed : unit - std::fmod(passed, unit));
}

Seconds untilRemainingChanges(Date until, Date from) {
    const double left = Seconds(until - from).count();
    return Seconds(std::fmod(left, left < 3600 ? 60 : left < 86400 ? 3600 : 86400));
}

} // namespace morvane::TimeFormat
