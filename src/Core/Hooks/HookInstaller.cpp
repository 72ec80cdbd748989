#include "Core/Hooks/HookInstaller.h"

#include "Core/Hooks/JsonHookTarget.h"
#include "Core/Hooks/PluginTarget.h"
#include "Core/Hooks/TomlHookTarget.h"
#include "Core/Settings/MorvaneSettings.h"

namespace morvane {

namespace {

/// The target of an agent that can't be connected: nothing is installed there, and nothing can be.
class UnsupportedTarget : public HookInstaller {
public:
    /// `refusal` is what `install` fails with.
    explicit UnsupportedTarget(QString refusal) : m_refusal(std::move(refusal)) {}

    Result<void> install() const override { return Failure{m_refusal}; }
    Result<void> uninstall() const override { return {}; }
    void renew() const override {}
    bool isInstalled() const override { return false; }
    Health health() const override { return {}; }

private:
    QString m_refusal;
};

/// Makes the target for each kind of integration.
struct TargetMaker {
    const AgentAdapter &adapter;
    HookPlan plan;
    ForwarderScripts scripts;
    std::function<void()> moment;
    Defaults &defaults;

    std::unique_ptr<HookInstaller> operator()(const JsonHooks &place) const {
        return std::make_unique<JsonHookTarget>(place, file(place.settingsPath), adapter, plan,
                                                scripts, defaults);
    }
    std::unique_ptr<HookInstaller> operator()(const TomlHooks &place) const {
        return std::make_unique<TomlHookTarget>(file(place.settingsPath), plan, scripts);
    }
    std::unique_ptr<HookInstaller> operator()(const PluginFile &place) const {
        return std::make_unique<PluginTarget>(place.filePath, scripts);
    }
    std::unique_ptr<HookInstaller> operator()(const Unsupported &place) const {
        return std::make_unique<UnsupportedTarget>(
            HookInstaller::tr("%1 can't be connected yet: %2")
                .arg(displayName(adapter.kind()), place.reason));
    }

    AgentSettingsFile file(const QString &path) const { return AgentSettingsFile(path, moment); }
};

} // namespace

std::unique_ptr<HookInstaller> HookInstaller::make(const AgentAdapter &adapter,
                                                   const MorvaneSettings &settings,
                                                   std::uint16_t boundPort,
                                                   std::function<void()> moment) {
    return std::visit(TargetMaker{adapter, HookPlan(adapter, settings.approvalsEnabled()),
                                  ForwarderScripts(settings.eventToken(), boundPort),
                                  std::move(moment), settings.defaults()},
                      adapter.integration());
}

} // namespace morvane
