#include "Core/Usage/UsageFormat.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace morvane::UsageFormat {

namespace {

const QLatin1String sessionKey("five_hour");
const QLatin1String weeklyKey("seven_day");

/// The clock counts nanoseconds in 64 bits, and ends a little later.
constexpr double lastSecond = 9e9;

/// A number above this counts milliseconds; as seconds it would lie far beyond any date.
constexpr double firstMilliseconds = 1e12;

QJsonObject objectOf(const QByteArray &body) {
    return QJsonDocument::fromJson(body).object();
}

double fraction(double percentage) {
    return std::clamp(percentage / 100, 0.0, 1.0);
}

/// The first of several names for the same figure, since its name has changed over time.
std::optional<double> percentage(const QJsonObject &window) {
    for (const char *key : {"utilization", "used_percentage", "percent"}) {
        if (const auto number = doubleValue(window[QLatin1String(key)])) {
            return number;
        }
    }
    return std::nullopt;
}

std::optional<UsageWindow> window(const QJsonValue &value) {
    const QJsonObject object = value.toObject();
    const auto used = percentage(object);
    if (!used) {
        return std::nullopt;
    }
    return UsageWindow{fraction(*used), date(object[QLatin1String("resets_at")]), {}};
}

/// The models that have a window of their own.
bool namesLargeModel(const QString &name) {
    const QString lower = name.toLower();
    return lower.contains(u"fable") || lower.contains(u"mythos") || lower.contains(u"opus");
}

std::optional<UsageWindow> scopedWindow(const QJsonValue &limits) {
    const QJsonArray entries = limits.toArray();
    if (!std::ranges::all_of(entries, [](const QJsonValue &entry) { return entry.isObject(); })) {
        return std::nullopt;
    }
    for (const QJsonValue entry : entries) {
        const QString model = entry[u"scope"][u"model"][u"display_name"].toString();
        if (entry[u"kind"].toString() == u"weekly_scoped" && namesLargeModel(model)) {
            if (const auto result = window(entry)) {
                return result;
            }
        }
    }
    return std::nullopt;
}

/// The form that was used before there was a list of limits.
std::optional<UsageWindow> namedWindow(const QJsonObject &root) {
    for (auto member = root.begin(); member != root.end(); ++member) {
        const bool isCommon = member.key() == sessionKey || member.key() == weeklyKey;
        if (!isCommon && namesLargeModel(member.key())) {
            if (const auto result = window(member.value())) {
                return result;
            }
        }
    }
    return std::nullopt;
}

std::optional<Usage> commonWindows(const QJsonObject &object, Date now) {
    const Usage result{window(object[sessionKey]), window(object[weeklyKey]), {}, now};
    return result.session || result.weekly ? std::optional(result) : std::nullopt;
}

std::optional<int> minutes(const QJsonValue &value) {
    const auto number = doubleValue(value);
    return number && std::abs(*number) < 1e9 ? std::optional(static_cast<int>(*number))
                                             : std::nullopt;
}

std::optional<UsageWindow> codexWindow(const QJsonValue &value) {
    const auto used = doubleValue(value[u"usedPercent"]);
    if (!used) {
        return std::nullopt;
    }
    return UsageWindow{fraction(*used), date(value[u"resetsAt"]),
                       minutes(value[u"windowDurationMins"])};
}

} // namespace

std::optional<Usage> parse(const QByteArray &body, Date now) {
    const QJsonObject root = objectOf(body);
    std::optional<Usage> result = commonWindows(root, now);
    if (result) {
        result->fable = scopedWindow(root[u"limits"]);
        if (!result->fable) {
            result->fable = namedWindow(root);
        }
        result->fableReadAt = now;
    }
    return result;
}

std::optional<Usage> parseLive(const QByteArray &body, Date now) {
    return commonWindows(objectOf(body)[u"rate_limits"].toObject(), now);
}

std::optional<CodexUsage> parseCodex(const QByteArray &line, Date now) {
    const QJsonValue limits = objectOf(line)[u"result"][u"rateLimits"];
    const QJsonValue plan = limits[u"planType"];
    const CodexUsage result{codexWindow(limits[u"primary"]), codexWindow(limits[u"secondary"]), now,
                            plan.isString() ? std::optional(plan.toString()) : std::nullopt};
    return result.primary || result.secondary ? std::optional(result) : std::nullopt;
}

std::optional<double> doubleValue(const QJsonValue &value) {
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

std::optional<Date> dateAt(double seconds) {
    if (!(seconds > 0 && seconds < lastSecond)) {
        return std::nullopt;
    }
    return Date{} + Seconds(seconds);
}

std::optional<Date> date(const QJsonValue &value) {
    if (const auto number = doubleValue(value)) {
        return dateAt(*number > firstMilliseconds ? *number / 1000 : *number);
    }
    // A text without a zone could mean any moment of a day.
    static const QRegularExpression whole(QStringLiteral(
        "^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d(\\.\\d+)?(Z|[+-]\\d\\d:?\\d\\d)$"));
    const QString text = value.toString();
    if (!whole.match(text).hasMatch()) {
        return std::nullopt;
    }
    const QDateTime moment = QDateTime::fromString(text, Qt::ISODateWithMs);
    return moment.isValid() ? dateAt(static_cast<double>(moment.toMSecsSinceEpoch()) / 1000)
                            : std::nullopt;
}

} // namespace morvane::UsageFormat
