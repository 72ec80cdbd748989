#pragma once

#include "Core/Hooks/AgentSettingsFile.h"
#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Hooks/HookPlan.h"

#include <QCoreApplication>

namespace morvane {

/// Hooks in a block of ours, in the settings of an agent that keeps these in TOML.
class TomlHookTarget : public HookInstaller {
    Q_DECLARE_TR_FUNCTIONS(TomlHookTarget)

public:
    TomlHookTarget(AgentSettingsFile file, HookPlan plan, ForwarderScripts scripts);

    Result<void> install() const override;
    Result<void> uninstall() const override;
    void renew() const override;
    bool isInstalled() const override;
    bool hasStaleEntries() const override;
    Health health() const override;

private:
    std::optional<QByteArray> settled(std::optional<QByteArray> content) const;
    QByteArray text() const;
    bool isOrigin(const SettingsOrigin::Content &origin, const QByteArray &left) const;

    AgentSettingsFile m_file;
    HookPlan m_plan;
    ForwarderScripts m_scripts;
};

} // namespace morvane
