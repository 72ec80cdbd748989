#include "Core/Hooks/StatusLineEntry.h"

#include <QDir>
#include <nlohmann/json.hpp>

#include <optional>

namespace morvane::StatusLineEntry {

namespace {

using nlohmann::json;

/// The part of a command that marks it as ours, whatever home folder it is from.
constexpr char statusLineScriptMarker[] = ".morvane/statusline.sh";

json current() {
    const QString script =
        QDir::homePath() + QLatin1Char('/') + QLatin1String(statusLineScriptMarker);
    return {{"type", "command"}, {"command", script.toStdString()}};
}

/// The value under the feed's key; none where there is no such key. Null counts as a value, since
/// somebody has set it.
std::optional<json> valueIn(const json &root, const StatusLineFeed &feed) {
    const auto found = root.find(feed.key.toStdString());
    return found == root.end() ? std::nullopt : std::optional<json>(*found);
}

bool isMorvaneStatusLine(const json &value) {
    const json command = value.is_object() ? value.value("command", json()) : json();
    return command.is_string() &&
           command.get_ref<const std::string &>().find(statusLineScriptMarker) != std::string::npos;
}

} // namespace

bool needsRepair(const json &root, const StatusLineFeed &feed) {
    const auto value = valueIn(root, feed);
    return !value || value->empty() || *value == json("") ||
           (isMorvaneStatusLine(*value) && (*value)["command"] != current()["command"]);
}

bool isInstalled(const json &root, const StatusLineFeed &feed) {
    const auto value = valueIn(root, feed);
    return value && isMorvaneStatusLine(*value);
}

void install(json &root, const StatusLineFeed &feed) {
    const auto value = valueIn(root, feed);
    if (!value || isMorvaneStatusLine(*value)) {
        root[feed.key.toStdString()] = current();
    }
}

void uninstall(json &root, const StatusLineFeed &feed) {
    if (isInstalled(root, feed)) {
        root.erase(feed.key.toStdString());
    }
}

StatusLineHealth health(const json &root, const StatusLineFeed &feed, bool scriptExecutable) {
    const auto value = valueIn(root, feed);
    if (!value) {
        return StatusLineHealth::absent;
    }
    if (!isMorvaneStatusLine(*value)) {
        return StatusLineHealth::ownedByOther;
    }
    return scriptExecutable ? StatusLineHealth::connected : StatusLineHealth::scriptMissing;
}

} // namespace morvane::StatusLineEntry
