#include "Core/Hooks/HookInstaller.h"

#include "Core/Hooks/JsonHookTarget.h"
#include "Core/Hooks/PluginTarget.h"
#include "Core/Hooks/TomlHookTarget.h"
#include "Core/Settings/MorvaneSettings.h"

namespace morvane {

namespace {

/// The place in an agent that can't be connected: there is nothing there, and nothing can be put
/// there.
class UnsupportedTarget : public HookTarget {
public:
    /// `refusal` is what `install` fails with.
    explicit UnsupportedTarget(QString refusal) : m_refusal(std::move(refusal)) {}

    std::optional<Failure> install() const override { return Failure{m_refusal}; }
    std::optional<Failure> uninstall() const override { return std::nullopt; }
    void renew() const override {}
    bool isInstalled() const override { return false; }
    bool hasStaleEntries() const override { return false; }
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

    std::unique_ptr<HookTarget> operator()(const JsonHooks &place) const {
        return std::make_unique<JsonHookTarget>(place, file(place.settingsPath), adapter, plan,
                                                scripts, defaults);
    }
    std::unique_ptr<HookTarget> operator()(const TomlHooks &place) const {
        return std::make_unique<TomlHookTarget>(file(place.settingsPath), plan, scripts);
    }
    std::unique_ptr<HookTarget> operator()(const PluginFile &place) const {
        return std::make_unique<PluginTarget>(place.filePath, scripts);
    }
    std::unique_ptr<HookTarget> operator()(const Unsupported &place) const {
        return std::make_unique<UnsupportedTarget>(
            HookInstaller::tr("%1 can't be connected yet: %2")
                .arg(displayName(adapter.kind()), place.reason));
    }

    AgentSettingsFile file(const QString &path) const { return AgentSettingsFile(path, moment); }
};

} // namespace

HookInstaller::HookInstaller(const AgentAdapter &adapter, const MorvaneSettings &settings,
                             std::uint16_t boundPort, std::function<void()> moment)
    : m_target(std::visit(TargetMaker{adapter, HookPlan(adapter, settings.approvalsEnabled()),
                                      ForwarderScripts(settings.eventToken(), boundPort),
                                      std::move(moment), settings.defaults()},
                          adapter.integration())) {}

std::optional<Failure> HookInstaller::install() const {
    return m_target->install();
}

std::optional<Failure> HookInstaller::uninstall() const {
    return m_target->uninstall();
}

void HookInstaller::renew() const {
    m_target->renew();
}

bool HookInstaller::isInstalled() const {
    return m_target->isInstalled();
}

const AgentAdapter *HookInstaller::presentForm() const {
    return m_target->presentForm();
}

bool HookInstaller::hasTraces() const {
    return m_target->hasTraces();
}

std::optional<Failure> HookInstaller::removeTraces() const {
    return m_target->removeTraces();
}

bool HookInstaller::hasStaleEntries() const {
    return m_target->hasStaleEntries();
}

Health HookInstaller::health() const {
    return m_target->health();
}

std::optional<Failure> HookInstaller::setNotificationsSuppressed(bool suppressed) const {
    return m_target->setNotificationsSuppressed(suppressed);
}

bool HookInstaller::hasSuppressedNotifications() const {
    return m_target->hasSuppressedNotifications();
}

std::optional<Failure> HookInstaller::returnNotifications() const {
    return m_target->returnNotifications();
}

} // namespace morvane
