#include "App/TrayStandIn.h"

#include "App/PlatformServices.h"
#include "Core/Hooks/AgentConnections.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Presentation/PresenterManager.h"

namespace morvane {

namespace {

constexpr Seconds trayPatience(1);

} // namespace

TrayStandIn::TrayStandIn(MorvaneSettings &settings, AgentConnections &connections,
                         const PlatformServices &platform)
    : m_settings(settings), m_connections(connections), m_platform(platform) {}

void TrayStandIn::start(PresenterManager &presenters) {
    m_presenters = &presenters;
    connect(m_platform.statusItemHost.get(), &StatusItemHost::presenceChanged, this,
            &TrayStandIn::refresh);
    connect(&m_connections, &AgentConnections::statusChanged, this, &TrayStandIn::refresh);
    connect(&m_settings, &MorvaneSettings::changed, this, &TrayStandIn::refresh);
    refresh();
}

bool TrayStandIn::hasTrayIcon() const {
    return m_settings.showMenuBarIcon() && m_platform.statusItemHost->isPresent();
}

void TrayStandIn::setWelcoming(bool isWelcoming) {
    m_isWelcoming = isWelcoming;
    refresh();
}

/// Waits a moment: at the start nobody knows yet whether there is a tray, and a desktop's panel
/// that only restarts is back before anything has moved. Switching the icon off needs no stand-in,
/// since the person is told where Morvane is; a newcomer looks for the capsule.
void TrayStandIn::refresh() {
    if (m_presenters == nullptr) {
        return;
    }
    m_task = m_platform.scheduler->after(trayPatience, [this] {
        const bool isIntroduced = !m_isWelcoming && !m_connections.installedAgents().isEmpty();
        const bool hasTray = isIntroduced ? m_platform.statusItemHost->isPresent() : hasTrayIcon();
        const StandIn withoutTray = isIntroduced ? StandIn::whileActive : StandIn::always;
        m_presenters->setStandIn(hasTray ? StandIn::none : withoutTray);
    });
}

} // namespace morvane

#include "moc_TrayStandIn.cpp"
