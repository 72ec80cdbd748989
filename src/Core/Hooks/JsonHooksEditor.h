#pragma once

#include <QString>
#include <nlohmann/json_fwd.hpp>

#include <optional>

namespace morvane {
class HookPlan;
}

/// Our entries among the hooks of a JSON settings file: pure functions over the file's root, which
/// must be an object. `hooksKey` names the member that maps event names to lists of entries;
/// without one the root is that map. Whatever has another shape is left alone by all functions but
/// `install`, which replaces it. Safe from any thread.
namespace morvane::JsonHooksEditor {

/// True when there is any entry of ours, of whatever version.
bool isInstalled(const nlohmann::json &root, const std::optional<QString> &hooksKey);

/// True when there are entries of ours and each fits the plan's release of the agent, even if it is
/// out of date in other ways.
bool areOfThisRelease(const nlohmann::json &root, const std::optional<QString> &hooksKey,
                      const HookPlan &plan);

/// True when our entries differ from those that `install` would write: in command lines or events,
/// or because they are for another release of the agent. Other changes that somebody has made to
/// them go unnoticed. False where there is no map of hooks.
bool hasStaleEntries(const nlohmann::json &root, const std::optional<QString> &hooksKey,
                     const HookPlan &plan);

/// Replaces our entries, whatever version they are from, with those of the plan. These go behind
/// all others or, where the plan keeps entries, where ours were.
void install(nlohmann::json &root, const std::optional<QString> &hooksKey, const HookPlan &plan);

/// Removes our entries. An entry that holds a command of ours and another is removed as a whole.
/// False, with nothing changed, where there is no map of hooks.
bool uninstall(nlohmann::json &root, const std::optional<QString> &hooksKey);

} // namespace morvane::JsonHooksEditor
