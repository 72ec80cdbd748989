#include "Core/Usage/UsagePoller.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Settings/MorvaneSettings.h"

#include <utility>

namespace morvane {

UsagePoller::UsagePoller(MorvaneSettings &settings, const UsagePorts &ports, const QString &version,
                         std::function<bool()> milestoneEligibility)
    : m_settings(settings), m_milestones(ports.scheduler, std::move(milestoneEligibility)),
      m_claude(settings, ports), m_codex(settings, ports, version) {
    connect(&m_claude, &ClaudeLimits::usageRead, &m_milestones,
            &UsageMilestones::evaluateMilestones);
    connect(&m_claude, &ClaudeLimits::changed, this, &UsagePoller::changed);
    connect(&m_codex, &CodexLimits::changed, this, &UsagePoller::changed);
    connect(&m_milestones, &UsageMilestones::dismissed, this, &UsagePoller::changed);
    connect(&m_milestones, &UsageMilestones::reached, this, &UsagePoller::milestoneEvents);
}

void UsagePoller::setEnabled(bool enabled) {
    if (enabled) {
        m_claude.start();
        m_codex.start();
    } else {
        m_claude.turnOff();
        m_codex.turnOff();
        m_milestones.clearMilestone();
    }
    emit changed();
}

void UsagePoller::refreshNow() {
    if (!m_settings.usageEnabled()) {
        return;
    }
    m_claude.refreshNow();
    m_codex.refreshNow();
    emit changed();
}

void UsagePoller::retryKeychainAccess() {
    m_claude.allowKeychain();
    refreshNow();
}

void UsagePoller::ingestLive(const QByteArray &data, AgentKind agent) {
    if (m_settings.usageEnabled() && AgentRegistry::adapter(agent).statusLineFeed()) {
        m_claude.ingestLive(data);
    }
}

void UsagePoller::stop() {
    m_claude.stop();
    m_codex.stop();
}

void UsagePoller::refreshMilestoneEligibility() {
    const auto before = activeMilestone();
    if (!m_settings.usageEnabled() || !m_milestones.areEligible()) {
        m_milestones.clearMilestone();
    } else if (usage()) {
        m_milestones.evaluateMilestones(*usage());
    }
    if (activeMilestone() != before) {
        emit changed();
    }
}

} // namespace morvane

#include "moc_UsagePoller.cpp"
