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

/// How much of Claude's limits is used, and when that is asked. The figures come from the usage
/// endpoint, or with each status line of a session, which spares the endpoint. Owned by
/// `UsagePoller`; main thread.
class ClaudeLimits : public QObject {
    Q_OBJECT

public:
    ClaudeLimits(MorvaneSettings &settings, const UsagePorts &ports);

    const std::optional<Usage> &usage() const { return m_usage; }
    const std::optional<QString> &unavailableReason() const { return m_unavailableReason; }
    bool keychainBlocked() const { return m_keychainBlocked; }
    bool approachingLimit() const;

    // These tell nobody of what they change.

    /// Asks at once, and from then on every few minutes.
    void start();

    /// Asks no more, until it is started or refreshed.
    void stop() { m_claudeTimer.cancel(); }

    /// Stops, and forgets what was read.
    void turnOff();

    /// Asks at once, whatever speaks against it, and as though asking had never failed.
    void refreshNow();

    void allowKeychain();

    void ingestLive(const QByteArray &data);

signals:
    /// Figures have been read, ahead of `changed`.
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
    std::optional<QString> m_unavailableReason;
    bool m_keychainBlocked = false;

    Task m_claudeTimer;
    Backoff m_backoff;
    std::optional<Date> m_lastLiveIngest;
    std::optional<Date> m_claudeRetryAt; ///< the endpoint wants to be left alone until then
    bool m_forceNextClaudePoll = false;  ///< whatever speaks against it
};

} // namespace morvane
