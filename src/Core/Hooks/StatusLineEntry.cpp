#include "Core/Hooks/StatusLineEntry.h"

#include <QDir>
#include <nlohmann/json.hpp>

namespace morvane::StatusLineEntry {

namespace {

using nlohmann::json;

/// A part of the command by which it is known to be ours, whatever home folder it is from.
constexpr char statusLineScriptMarker[] = ".morvane/statusline.sh";

json current() {
    const QString script =
        QDir::homePath() + QLatin1Char('/') + QLatin1String(statusLineScriptMarker);
    return {{"type", "command"}, {"command", script.toStdString()}};
}

/// The value under the feed's key, or null. An empty value is nobody's, and as good as none.
json valueIn(const json &root, const StatusLineFeed &feed) {
    const json value = root.value(feed.key.toStdString(), json());
    return value.empty() || value == json("") ? json() : value;
}

bool isMorvaneStatusLine(const json &value) {
    const json command = value.is_object() ? value.value("command", json()) : json();
    return command.is_string() &&
           command.get_ref<const std::string &>().find(statusLineScriptMarker) != std::string::npos;
}

} // namespace

bool needsRepair(const json &root, const StatusLineFeed &feed) {
    const json value = valueIn(root, feed);
    return value.is_null() ||
           (isMorvaneStatusLine(value) && value["command"] != current()["command"]);
}

void install(json &root, const StatusLineFeed &feed) {
    const json value = valueIn(root, feed);
    if (value.is_null() || isMorvaneStatusLine(value)) {
        root[feed.key.toStdString()] = current();
    }
}

void uninstall(json &root, const StatusLineFeed &feed) {
    if (isMorvaneStatusLine(valueIn(root, feed))) {
        root.erase(feed.key.toStdString());
    }
}

StatusLineHealth health(const json &root, const StatusLineFeed &feed, bool scriptExecutable) {
    const json value = valueIn(root, feed);
    if (value.is_null()) {
        return StatusLineHealth::absent;
    }
    if (!isMorvaneStatusLine(value)) {
        return StatusLineHealth::ownedByOther;
    }
    return scriptExecutable ? StatusLineHealth::connected : StatusLineHealth::scriptMissing;
}

} // namespace morvane::StatusLineEntry
