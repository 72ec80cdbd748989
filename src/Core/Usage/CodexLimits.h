#pragma once

#include "Core/Usage/Backoff.h"
#include "Core/Usage/Usage.h"
#include "Core/Usage/UsagePorts.h"
#include "Platform/Result.h"
#include "Platform/Task.h"

#include <QObject>
#include <QString>

#include <optional>

namespace morvane {

class MorvaneSettings;

/// How much of Codex's limits is used, and the schedule of asking Codex itself. Owned by
/// `UsagePoller`; main thread.
class CodexLimits : public QObject {
    Q_OBJECT

public:
    /// `version` is this program's.
    CodexLimits(MorvaneSettings &settings, const UsagePorts &ports, const QString &version);

    const std::optional<CodexUsage> &usage() const { return m_usage; }
    const std::optional<QString> &unavailableReason() const { return m_unavailableReason; }
    bool approachingLimit() const;

    // These emit no signal themselves.

    /// Asks at once, and from then on every few minutes.
    void start();

    /// Asks at once, and resets the backoff.
    void refreshNow();

    /// Asks no more, until it is started or refreshed.
    void stop() { m_codexTimer.cancel(); }

    /// Stops, and forgets what was read.
    void turnOff();

signals:
    void changed();

private:
    void scheduleCodex(Seconds delay);
    void pollCodex();
    void takeCodex(const Result<CodexUsage> &result);

    MorvaneSettings &m_settings;
    const UsagePorts m_ports;
    const QString m_version;
    std::optional<CodexUsage> m_usage;
    std::optional<QString> m_unavailableReason;
    Backoff m_backoff;
    Task m_codexTimer;
    bool m_codexPollInFlight = false;
};

} // namespace morvane
