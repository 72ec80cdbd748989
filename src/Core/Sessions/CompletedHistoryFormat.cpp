#include "Core/Sessions/CompletedHistoryFormat.h"

#include "Core/Ground/Utf8Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

namespace morvane::CompletedHistoryFormat {

namespace {

using nlohmann::json;

using Text = std::optional<QString>;

constexpr std::array<std::pair<const char *, Text CompletedRecord::*>, 8> optionalTexts{{
    {"gitBranch", &CompletedRecord::gitBranch},
    {"itermSessionID", &CompletedRecord::itermSessionID},
    {"termProgram", &CompletedRecord::termProgram},
    {"hostBundleID", &CompletedRecord::hostBundleID},
    {"lastPrompt", &CompletedRecord::lastPrompt},
    {"summary", &CompletedRecord::summary},
    {"hostAppName", &CompletedRecord::hostAppName},
    {"ttyName", &CompletedRecord::ttyName},
}};

constexpr std::array<std::pair<const char *, Text PaneLocator::*>, 8> paneTexts{{
    {"tmux", &PaneLocator::tmux},
    {"tmuxServer", &PaneLocator::tmuxServer},
    {"wezterm", &PaneLocator::wezterm},
    {"kitty", &PaneLocator::kitty},
    {"zellij", &PaneLocator::zellij},
    {"orca", &PaneLocator::orca},
    {"kittyListenOn", &PaneLocator::kittyListenOn},
    {"weztermSocket", &PaneLocator::weztermSocket},
}};

constexpr Date reference = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);

/// A century and a half: far beyond any real date, and near enough to reckon with.
constexpr double largestDistance = 150 * 365.25 * 86'400;

/// Whole seconds and their fraction apart, so that a date that was read is written as the same
/// number again: nanoseconds since 2001 are more digits than a double has.
Date toDate(double seconds) {
    const double near = std::clamp(seconds, -largestDistance, largestDistance);
    const double whole = std::floor(near);
    return reference + std::chrono::seconds(static_cast<std::int64_t>(whole)) +
           std::chrono::nanoseconds(std::llround((near - whole) * 1e9));
}

double fromDate(Date date) {
    const auto whole = std::chrono::floor<std::chrono::seconds>(date - reference);
    return static_cast<double>(whole.count()) + Seconds(date - reference - whole).count();
}

/// The member under the key, or null where there is none.
const json &member(const json &object, const char *key) {
    static const json none;
    const auto found = object.find(key);
    return found != object.end() ? *found : none;
}

Text text(const json &object, const char *key) {
    const json &value = member(object, key);
    return value.is_string() ? Text(textOf(value.get_ref<const std::string &>())) : std::nullopt;
}

std::optional<AgentKind> agent(const json &object) {
    const json &value = member(object, "agent");
    return value.is_string() ? agentKind(value.get_ref<const std::string &>()) : std::nullopt;
}

/// All or nothing: a pane without its server, say, would be found on the wrong one.
std::optional<PaneLocator> pane(const json &object) {
    const json &value = member(object, "pane");
    if (!value.is_object()) {
        return std::nullopt;
    }
    PaneLocator result;
    for (const auto &[key, field] : paneTexts) {
        result.*field = text(value, key);
        if (!(result.*field) && !member(value, key).is_null()) {
            return std::nullopt;
        }
    }
    return result;
}

std::optional<CompletedRecord> record(const json &object) {
    const Text id = text(object, "id");
    const Text name = text(object, "name");
    const Text cwd = text(object, "cwd");
    const json &finishedAt = member(object, "finishedAt");
    if (!id || !name || !cwd || !finishedAt.is_number()) {
        return std::nullopt;
    }
    CompletedRecord result;
    result.id = *id;
    result.name = *name;
    result.cwd = *cwd;
    result.finishedAt = toDate(finishedAt.get<double>());
    for (const auto &[key, field] : optionalTexts) {
        result.*field = text(object, key);
    }
    result.agent = agent(object);
    result.failed = member(object, "failed") == json(true);
    result.pane = pane(object);
    return result;
}

void put(json &object, const char *key, const Text &value) {
    if (value) {
        object[key] = value->toStdString();
    }
}

json toJson(const PaneLocator &pane) {
    json result = json::object();
    for (const auto &[key, field] : paneTexts) {
        put(result, key, pane.*field);
    }
    return result;
}

json toJson(const CompletedRecord &record) {
    json result{{"id", record.id.toStdString()},
                {"name", record.name.toStdString()},
                {"cwd", record.cwd.toStdString()},
                {"finishedAt", fromDate(record.finishedAt)}};
    for (const auto &[key, field] : optionalTexts) {
        put(result, key, record.*field);
    }
    if (record.agent) {
        result["agent"] = std::string(rawValue(*record.agent));
    }
    if (record.failed) {
        result["failed"] = true;
    }
    if (record.pane) {
        result["pane"] = toJson(*record.pane);
    }
    return result;
}

} // namespace

std::optional<QList<CompletedRecord>> parse(const QByteArray &text) {
    const json root = json::parse(text.begin(), text.end(), nullptr, false);
    if (!root.is_array()) {
        return std::nullopt;
    }
    QList<CompletedRecord> result;
    for (const json &object : root) {
        const auto decoded = record(object);
        if (!decoded) {
            return std::nullopt;
        }
        result.append(*decoded);
    }
    return result;
}

QByteArray write(const QList<CompletedRecord> &history) {
    json result = json::array();
    for (const CompletedRecord &record : history) {
        result.push_back(toJson(record));
    }
    return QByteArray::fromStdString(result.dump());
}

} // namespace morvane::CompletedHistoryFormat
