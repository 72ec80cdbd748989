#include "Core/Usage/UsageEndpoint.h"

#include "Core/Ground/AskWithin.h"

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <utility>

namespace morvane {

namespace {

constexpr Seconds endpointLimit(15);
constexpr Seconds usualRetry(300);

/// The seconds until an HTTP date, such as "Wed, 21 Oct 2015 07:28:00 GMT".
std::optional<double> secondsUntil(const QString &text, Date now) {
    if (!text.endsWith(u" GMT")) {
        return std::nullopt;
    }
    QDateTime moment =
        QLocale::c().toDateTime(text.chopped(4), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss"));
    moment.setTimeZone(QTimeZone::utc());
    if (!moment.isValid()) {
        return std::nullopt;
    }
    const Seconds sinceEpoch = now.time_since_epoch();
    return static_cast<double>(moment.toSecsSinceEpoch()) - sinceEpoch.count();
}

std::optional<double> secondsIn(const QString &text) {
    bool isNumber = false;
    const double seconds = text.trimmed().toDouble(&isNumber);
    return isNumber && !std::isnan(seconds) ? std::optional(seconds) : std::nullopt;
}

} // namespace

QUrl UsageEndpoint::url() {
    return QUrl(QStringLiteral("https://" MORVANE_USAGE_HOST "/api/oauth/usage"));
}

void UsageEndpoint::ask(const QByteArray &token, HttpsClient::Finished use) {
    const std::uint64_t number = ++m_lastNumber;
    const auto finish = [this, number, use = std::move(use)](const auto &answer) {
        const auto ended = m_pending.extract(number);
        use(answer);
    };
    const HttpsRequest request{m_url,
                               {{"Authorization", "Bearer " + token},
                                {"anthropic-beta", "oauth-2025-04-20"},
                                {"User-Agent", "claude-code/2.1.0"}}};
    m_pending.emplace(number, askWithin(endpointLimit, m_client, m_scheduler, request, finish));
}

Seconds UsageEndpoint::retryAfter(const std::optional<QByteArray> &header, Date now) {
    const QString text = QString::fromLatin1(header.value_or(QByteArray()));
    auto seconds = secondsIn(text);
    if (!seconds) {
        seconds = secondsUntil(text, now);
    }
    return std::clamp(Seconds(seconds.value_or(usualRetry.count())), Seconds(0), longestRetry);
}

} // namespace morvane
