#pragma once

#include "Core/Agents/AgentAdapter.h"
#include "Core/Hooks/AgentJsonFile.h"
#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Hooks/HookPlan.h"
#include "Core/Hooks/HookTarget.h"

namespace morvane {

/// Hooks among the settings of an agent that keeps them in JSON, and the status line with them.
class JsonHookTarget : public HookTarget {
public:
    JsonHookTarget(const JsonHooks &place, const AgentAdapter &adapter, HookPlan plan,
                   ForwarderScripts scripts);

    std::optional<Failure> install() const override;
    std::optional<Failure> uninstall() const override;
    void renew() const override;
    bool isInstalled() const override;
    bool hasStaleEntries() const override;
    Health health() const override;

private:
    bool isStale(const nlohmann::json &root) const;

    std::optional<QString> m_hooksKey;
    AgentJsonFile m_settings;
    const AgentAdapter &m_adapter;
    HookPlan m_plan;
    ForwarderScripts m_scripts;
};

} // namespace morvane
