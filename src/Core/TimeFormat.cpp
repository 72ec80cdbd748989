#include "Core/TimeFormat.h"

#include <algorithm>

namespace morvane::TimeFormat {

QString elapsed(Date since, Date asOf) {
    using namespace std::chrono;
    const auto length = std::max(asOf - since, Date::duration::zero());
    const auto total = duration_cast<seconds>(length).count();
    if (total < 60) {
        return QStringLiteral("%1s").arg(total);
    }
    if (total < 3600) {
        return QStringLiteral("%1m").arg(total / 60);
    }
    return QStringLiteral("%1h%2")
        .arg(total / 3600)
        .arg(total % 3600 / 60, 2, 10, QLatin1Char('0'));
}

} // namespace morvane::TimeFormat
