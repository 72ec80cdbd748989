#include "Core/Usage/CodexLimits.h"

#include "Core/Settings/MorvaneSettings.h"
#include "Core/Usage/CodexUsageReader.h"
#include "Platform/BackgroundPool.h"
#include "Platform/Scheduler.h"

#include <utility>

namespace morvane {

CodexLimits::CodexLimits(MorvaneSettings &settings, const UsagePorts &ports, const QString &version)
    : m_settings(settings), m_ports(ports), m_version(version) {}

bool CodexLimits::approachingLimit() const {
    return m_settings.usageEnabled() && m_usage &&
           (isNearLimit(m_usage->primary) || isNearLimit(m_usage->secondary));
}

void CodexLimits::start() {
    m_unavailableReason.reset();
    refreshNow();
}

void CodexLimits::refreshNow() {
    m_backoff.succeeded();
    scheduleCodex(Seconds(0));
}

void CodexLimits::turnOff() {
    stop();
    m_usage.reset();
    m_unavailableReason = tr("turned off in Settings");
}

void CodexLimits::scheduleCodex(Seconds delay) {
    m_codexTimer = m_ports.scheduler.after(delay, [this] { pollCodex(); });
}

void CodexLimits::pollCodex() {
    if (!m_settings.usageEnabled()) {
        m_unavailableReason = tr("turned off in Settings");
        emit changed();
        return;
    }
    if (std::exchange(m_codexPollInFlight, true)) {
        return;
    }
    m_ports.background.compute(
        [&dialogue = m_ports.dialogue, &scheduler = m_ports.scheduler, version = m_version] {
            return CodexUsageReader::read(dialogue, version, scheduler);
        },
        m_ports.scheduler, this, [this](const Result<CodexUsage> &result) { takeCodex(result); });
}

void CodexLimits::takeCodex(const Result<CodexUsage> &result) {
    m_codexPollInFlight = false;
    if (!m_settings.usageEnabled()) {
        return;
    }
    if (result) {
        m_usage = *result;
        m_unavailableReason.reset();
        m_backoff.succeeded();
    } else {
        m_unavailableReason = result.error().message;
        m_backoff.failed();
    }
    emit changed();
    scheduleCodex(
        m_backoff.of(approachingLimit() ? Backoff::intervalNearLimit : Backoff::ordinaryInterval));
}

} // namespace morvane

#include "moc_CodexLimits.cpp"
