#pragma once

#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Hooks/SettingsOrigin.h"

#include <QCoreApplication>

namespace morvane {

/// A plugin file of our own, for an agent that loads plugins. The plugin posts events by itself,
/// without a forwarder, and so holds the token.
class PluginTarget : public HookInstaller {
    Q_DECLARE_TR_FUNCTIONS(PluginTarget)

public:
    PluginTarget(QString path, ForwarderScripts scripts);

    Result<void> install() const override;
    Result<void> uninstall() const override;
    void renew() const override;
    bool isInstalled() const override;
    Health health() const override;

private:
    QString m_path;
    SettingsOrigin m_origin;
    ForwarderScripts m_scripts;
};

} // namespace morvane
