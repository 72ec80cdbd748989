#include "Core/Hooks/JsonHooksEditor.h"

#include "Core/Hooks/HookPlan.h"

#include <QStringList>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace morvane::JsonHooksEditor {

namespace {

using nlohmann::json;

void collectCommand(const json &holder, QStringList &commands) {
    const auto command = holder.find("command");
    if (command == holder.end() || !command->is_string()) {
        return;
    }
    const QString text = QString::fromStdString(command->get_ref<const std::string &>());
    if (text.contains(QLatin1String(HookPlan::hookScriptMarker))) {
        commands.append(text);
    }
}

/// Our command lines in an entry: in older versions at its top, now in its list of hooks.
QStringList commands(const json &entry) {
    QStringList result;
    collectCommand(entry, result);
    const auto hooks = entry.find("hooks");
    if (hooks != entry.end() && hooks->is_array()) {
        std::ranges::for_each(*hooks, [&](const json &hook) { collectCommand(hook, result); });
    }
    return result;
}

bool isOurs(const json &entry) {
    return !commands(entry).isEmpty();
}

const json *hooksMap(const json &root, const std::optional<QString> &hooksKey) {
    if (!hooksKey) {
        return &root;
    }
    const auto found = root.find(hooksKey->toStdString());
    return found != root.end() && found->is_object() ? &*found : nullptr;
}

void setHooksMap(json map, json &root, const std::optional<QString> &hooksKey) {
    if (!hooksKey) {
        root = std::move(map);
    } else if (map.empty()) {
        root.erase(hooksKey->toStdString());
    } else {
        root[hooksKey->toStdString()] = std::move(map);
    }
}

json &entriesOf(json &map, const QString &event) {
    json &entries = map[event.toStdString()];
    if (!entries.is_array()) {
        entries = json::array();
    }
    return entries;
}

/// Removes our entries, except the first of each event in `events`.
void removeOurs(json &map, const QStringList &events = {}) {
    for (auto event = map.begin(); event != map.end();) {
        bool keeps = events.contains(QString::fromStdString(event.key()));
        const auto goes = [&keeps](const json &entry) {
            return isOurs(entry) && !std::exchange(keeps, false);
        };
        const bool hadOurs =
            event->is_array() && std::erase_if(event->get_ref<json::array_t &>(), goes) > 0;
        event = hadOurs && event->empty() ? map.erase(event) : std::next(event);
    }
}

} // namespace

bool isInstalled(const json &root, const std::optional<QString> &hooksKey) {
    const json *map = hooksMap(root, hooksKey);
    return map && std::ranges::any_of(*map, [](const json &entries) {
               return entries.is_array() && std::ranges::any_of(entries, isOurs);
           });
}

bool areOfThisRelease(const json &root, const std::optional<QString> &hooksKey,
                      const HookPlan &plan) {
    if (!isInstalled(root, hooksKey)) {
        return false;
    }
    for (const auto &event : hooksMap(root, hooksKey)->items()) {
        const QString name = QString::fromStdString(event.key());
        const auto isOther = [&](const json &entry) {
            return isOurs(entry) && (!plan.knows(name) || plan.isOfAnotherRelease(name, entry));
        };
        if (event.value().is_array() && std::ranges::any_of(event.value(), isOther)) {
            return false;
        }
    }
    return true;
}

bool hasStaleEntries(const json &root, const std::optional<QString> &hooksKey,
                     const HookPlan &plan) {
    const json *map = hooksMap(root, hooksKey);
    if (!map) {
        return false;
    }
    QStringList found;
    for (const auto &event : map->items()) {
        const QString name = QString::fromStdString(event.key());
        if (!event.value().is_array()) {
            continue;
        }
        for (const json &entry : event.value()) {
            const QStringList ours = commands(entry);
            const QString current = plan.command(name);
            if (std::ranges::any_of(ours, [&](const QString &each) { return each != current; }) ||
                (!ours.isEmpty() && plan.isOfAnotherRelease(name, entry))) {
                return true;
            }
            if (!ours.isEmpty() && !found.contains(name)) {
                found.append(name);
            }
        }
    }
    QStringList planned = plan.installedEvents();
    planned.sort();
    found.sort();
    return found != planned;
}

void install(json &root, const std::optional<QString> &hooksKey, const HookPlan &plan) {
    const json *present = hooksMap(root, hooksKey);
    json map = present ? *present : json::object();
    const QStringList events = plan.installedEvents();
    removeOurs(map, plan.keepsEntries() ? events : QStringList());
    for (const QString &event : events) {
        json &entries = entriesOf(map, event);
        const auto kept = std::ranges::find_if(entries, isOurs);
        (kept != entries.end() ? *kept : entries.emplace_back()) = plan.entry(event);
    }
    setHooksMap(std::move(map), root, hooksKey);
}

bool uninstall(json &root, const std::optional<QString> &hooksKey) {
    const json *present = hooksMap(root, hooksKey);
    if (!present) {
        return false;
    }
    json map = *present;
    removeOurs(map);
    setHooksMap(std::move(map), root, hooksKey);
    return true;
}

} // namespace morvane::JsonHooksEditor
