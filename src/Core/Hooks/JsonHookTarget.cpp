#include "Core/Hooks/JsonHookTarget.h"

#include "Core/Hooks/JsonHooksEditor.h"
#include "Core/Hooks/StatusLineEntry.h"

#include <nlohmann/json.hpp>

#include <tuple>

namespace morvane {

using nlohmann::json;

JsonHookTarget::JsonHookTarget(const JsonHooks &place, const AgentAdapter &adapter, HookPlan plan,
                               ForwarderScripts scripts)
    : m_hooksKey(place.hooksKey), m_settings(place.settingsPath), m_adapter(adapter), m_plan(plan),
      m_scripts(std::move(scripts)) {}

/// The scripts come first: hooks that name nothing would be an error in the agent.
std::optional<Failure> JsonHookTarget::install() const {
    const auto feed = m_adapter.statusLineFeed();
    if (auto failure = m_scripts.writeHookScript()) {
        return failure;
    }
    if (auto failure = feed ? m_scripts.writeStatusLineScript() : std::nullopt) {
        return failure;
    }
    const json extraKeys = m_adapter.extraRootKeys();
    return m_settings.editOrCreate([&](json &root) {
        JsonHooksEditor::install(root, m_hooksKey, m_plan);
        for (const auto &extra : extraKeys.items()) {
            root.emplace(extra.key(), extra.value());
        }
        if (feed) {
            StatusLineEntry::install(root, *feed);
        }
        return true;
    });
}

/// The forwarder stays, since other agents may use it.
std::optional<Failure> JsonHookTarget::uninstall() const {
    const auto feed = m_adapter.statusLineFeed();
    bool found = false;
    const auto failure = m_settings.edit([&](json &root) {
        found = JsonHooksEditor::uninstall(root, m_hooksKey);
        if (found && feed) {
            StatusLineEntry::uninstall(root, *feed);
        }
        return found;
    });
    if (found && feed && !failure) {
        ForwarderScripts::removeStatusLineScript();
    }
    return failure;
}

void JsonHookTarget::renew() const {
    std::ignore = m_scripts.writeHookScript();
    if (m_adapter.statusLineFeed()) {
        std::ignore = m_scripts.writeStatusLineScript();
    }
    if (hasStaleEntries()) {
        std::ignore = install();
    }
}

bool JsonHookTarget::isInstalled() const {
    const auto root = m_settings.read();
    return root && JsonHooksEditor::isInstalled(*root, m_hooksKey);
}

bool JsonHookTarget::hasStaleEntries() const {
    const auto root = m_settings.read();
    return root && isStale(*root);
}

bool JsonHookTarget::isStale(const json &root) const {
    const auto feed = m_adapter.statusLineFeed();
    return JsonHooksEditor::hasStaleEntries(root, m_hooksKey, m_plan) ||
           (feed && StatusLineEntry::needsRepair(root, *feed));
}

Health JsonHookTarget::health() const {
    const auto root = m_settings.read();
    if (!root) {
        return {.settingsReadable = false};
    }
    if (!JsonHooksEditor::isInstalled(*root, m_hooksKey)) {
        return {};
    }
    Health health{
        .hooksPresent = true,
        .entriesCurrent = !JsonHooksEditor::hasStaleEntries(*root, m_hooksKey, m_plan),
        .scriptExecutable = ForwarderScripts::isHookScriptExecutable(),
    };
    if (const auto feed = m_adapter.statusLineFeed()) {
        health.statusLine =
            StatusLineEntry::health(*root, *feed, ForwarderScripts::isStatusLineScriptExecutable());
    }
    return health;
}

} // namespace morvane
