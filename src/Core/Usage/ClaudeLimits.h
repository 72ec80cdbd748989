#pragma once

#include "Core/Usage/Backoff.h"
#include "Core/Usage/CredentialReader.h"
#include "Core/Usage/Usage.h"
#include "Core/Usage/UsageEndpoint.h"
#include "Core/Usage/UsagePorts.h"

#include <QObject>

#include <optional>

namespace morvane {

class MorvaneSettings;

/// How much of Claude's limits is used, and the schedule of asking for it. The figures come from
/// the usage endpoint or, sparing that, with each status line of a session. Owned by `UsagePoller`;
/// main thread.
class ClaudeLimits : public QObject {
    Q_OBJECT

public:
    ClaudeLimits(MorvaneSettings &settings, const UsagePorts &ports);

    const std::optional<Usage> &usage() const { return m_usage; }
    const std::optional<QString> &unavailableReason() const { return m_unavailableReason; }
    bool keychainBlocked() const { return m_keychainBlocked; }
    bool approachingLimit() const;

    // These, except `ingestLive`, emit no signal themselves.

    /// Asks at once, and from then on every few minutes.
    void start();

    /// Asks no more, until it is started or refreshed.
    void stop() { m_claudeTimer.cancel(); }

    /// Stops, and forgets what was read.
    void turnOff();

    /// Asks at once, even while fed live or asked to wait, and resets the backoff.
    void refreshNow();

    void allowKeychain();

    void ingestLive(const QByteArray &data);

signals:
    /// Figures have been read; sent before `changed`.
    void usageRead(const morvane::Usage &usage);
    void changed();

private:
    void startAnew();
    void scheduleClaude(Seconds delay);
    void pollClaude();
    bool isFedLive() const;
    Seconds retryLeft() const;
    void takeCredential(const CredentialReader::Lookup &lookup);
    void takeAnswer(const std::optional<HttpsAnswer> &answer);
    void takeBody(const QByteArray &body);
    void failClaude(const QString &reason, double mostBackoff = Backoff::mostBackoff);
    void endClaudePoll();
    void takeUsage(Usage usage);
    void detectWeeklyReset(const Usage &usage);

    MorvaneSettings &m_settings;
    Scheduler &m_scheduler;
    CredentialReader m_credentials;
    UsageEndpoint m_endpoint;

    std::optional<Usage> m_usage;
    struct {
        std::optional<Date> session, weekly, fable;
    } m_knownResets; ///< outlives figures that are dropped or left out for a while
    std::optional<QString> m_unavailableReason;
    bool m_keychainBlocked = false;

    Task m_claudeTimer;
    Backoff m_backoff;
    std::optional<Date> m_lastLiveIngest;
    std::optional<Date> m_claudeRetryAt; ///< the endpoint wants to be left alone until then
    bool m_forceNextClaudePoll = false;  ///< even while fed live or asked to wait
};

} // namespace morvane
