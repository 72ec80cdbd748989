#pragma once

#include <QString>
#include <nlohmann/json_fwd.hpp>

#include <optional>

namespace morvane {
class HookPlan;
}

/// Our entries among the hooks of a JSON settings file: pure functions over the file's root, which
/// must be an object. `hooksKey` names the member that maps event names to lists of entries; where
/// it is none the root is that map. What isn't of this shape is left as it is by all but `install`,
/// which replaces it. Safe from any thread.
namespace morvane::JsonHooksEditor {

/// True when there is any entry of ours, of whatever version.
bool isInstalled(const nlohmann::json &root, const std::optional<QString> &hooksKey);

/// True when there are entries of ours, and each is such as the plan's release of the agent has, be
/// it out of date in other ways.
bool areOfThisRelease(const nlohmann::json &root, const std::optional<QString> &hooksKey,
                      const HookPlan &plan);

/// True when our entries are not those that `install` would write: in command lines or events, or
/// since another release of the agent wants them otherwise. What somebody has changed of the rest
/// is not noticed. False where there is no map of hooks.
bool hasStaleEntries(const nlohmann::json &root, const std::optional<QString> &hooksKey,
                     const HookPlan &plan);

/// Replaces our entries, whatever version they are from, by those of the plan, behind the others
/// or, where the plan keeps entries, in their place.
void install(nlohmann::json &root, const std::optional<QString> &hooksKey, const HookPlan &plan);

/// Takes our entries out. An entry that holds a command of ours beside another goes as a whole.
/// False, with nothing changed, where there is no map of hooks.
bool uninstall(nlohmann::json &root, const std::optional<QString> &hooksKey);

} // namespace morvane::JsonHooksEditor
