#pragma once

#include "Core/Agents/AgentAdapter.h"
#include "Core/Hooks/AgentJsonFile.h"
#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Hooks/HookPlan.h"

class QDateTime;

namespace morvane {

class Defaults;

/// Hooks, and the status line with them, in the settings of an agent that keeps these in JSON.
class JsonHookTarget : public HookInstaller {
public:
    /// The adapter and the defaults must outlive the target.
    JsonHookTarget(const JsonHooks &place, AgentSettingsFile file, const AgentAdapter &adapter,
                   HookPlan plan, ForwarderScripts scripts, Defaults &defaults);

    Result<void> install() const override;
    Result<void> uninstall() const override;
    void renew() const override;
    bool isInstalled() const override;
    const AgentAdapter *presentForm() const override;
    bool hasTraces() const override;
    Result<void> removeTraces() const override;
    bool hasStaleEntries() const override;
    Health health() const override;
    Result<void> setNotificationsSuppressed(bool suppressed) const override;
    bool hasSuppressedNotifications() const override;
    Result<void> returnNotifications() const override;

private:
    OurJson ours() const;
    void putInto(nlohmann::json &root) const;
    bool takeOutOf(nlohmann::json &root) const;
    bool hasTracesIn(const nlohmann::json &root) const;
    bool isStale(const nlohmann::json &root) const;
    bool areHooksOff(const nlohmann::json &root) const;
    bool isMuted(const nlohmann::json &root) const;
    bool awaitsReview() const;
    void noteChange() const;
    QDateTime lastChange() const;

    QString m_path;
    std::optional<QString> m_hooksKey;
    const AgentAdapter &m_adapter;
    HookPlan m_plan;
    ForwarderScripts m_scripts;
    AgentJsonFile m_settings;
    Defaults &m_defaults;
};

} // namespace morvane
