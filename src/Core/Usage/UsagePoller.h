#pragma once

#include "Core/Agents/AgentKind.h"
#include "Core/Usage/CredentialReader.h"
#include "Core/Usage/Usage.h"
#include "Core/Usage/UsageAlerts.h"
#include "Core/Usage/UsageEndpoint.h"
#include "Platform/Result.h"

#include <QObject>

#include <functional>
#include <optional>

namespace morvane {

class MorvaneSettings;
class ToolDialogue;

/// What the poller asks by. The secret store and the dialogue must outlive what runs in the
/// background, the rest the poller.
struct UsagePorts {
    Scheduler &scheduler;
    BackgroundPool &background;
    SecretStore &secrets;
    HttpsClient &https;
    ToolDialogue &dialogue;
};

/// How much of the subscriptions' limits is used, and when that is asked. Two lines that know
/// nothing of each other: Claude's figures come from its usage endpoint, or with each status line
/// of a session, which spares the endpoint; Codex's come from Codex itself.
///
/// Nothing here can bring a question for a password before the person. A line that fails asks ever
/// more seldom. Each poll arms the next as it ends, so nothing piles up while the machine sleeps.
///
/// Owned by `AppController`; main thread.
class UsagePoller : public QObject {
    Q_OBJECT

public:
    /// `version` is this program's, for Codex. Another `endpoint` is for tests.
    UsagePoller(MorvaneSettings &settings, const UsagePorts &ports, const QString &version,
                const QUrl &endpoint = UsageEndpoint::url());

    // Published. A reason, for a person, says why figures are missing or are not the latest.

    const std::optional<Usage> &usage() const { return m_usage; }
    const std::optional<QString> &unavailableReason() const { return m_unavailableReason; }
    const std::optional<CodexUsage> &codexUsage() const { return m_codexUsage; }
    const std::optional<QString> &codexUnavailableReason() const {
        return m_codexUnavailableReason;
    }
    /// The milestone to show now.
    const std::optional<UsageMilestone> &activeMilestone() const { return m_activeMilestone; }
    /// The secret store did not answer, and isn't asked any more.
    bool keychainBlocked() const { return m_keychainBlocked; }

    /// True when figures were read longer ago than two polls take: then a bar has to say when.
    static bool areOld(Date fetchedAt, Date now);

    // True with a window that is used up to 85 %.
    bool approachingClaudeLimit() const;
    bool approachingCodexLimit() const;

    /// True while there is work for which a milestone is worth telling. Set by the controller;
    /// while it is unset none is told.
    std::function<bool()> milestoneEligibility;

    /// To be called when what `milestoneEligibility` says may have changed.
    void refreshMilestoneEligibility();

    /// Follows the setting: starts both lines, or stops them and forgets what they have read.
    void setEnabled(bool enabled);

    /// The person wants to know now; whatever kept from asking is passed over. Nothing while the
    /// limits are turned off.
    void refreshNow();

    /// The person allows another try at the secret store.
    void retryKeychainAccess();

    /// What an agent has handed its status line. What is not understood is dropped, as is what
    /// names a window that is over, or less of one than is known to be used.
    void ingestLive(const QByteArray &data, AgentKind agent);

    /// Asks no more, until it is enabled or refreshed.
    void stop();

signals:
    /// Some of what is published.
    void changed();
    /// A milestone is reached; sent once for each that is told.
    void milestoneEvents(const morvane::UsageMilestone &milestone);

private:
    void startAnew();
    void scheduleClaude(Seconds delay);
    void scheduleCodex(Seconds delay);
    void pollClaude();
    void pollCodex();
    bool isFedLive() const;
    Seconds retryLeft() const;
    void takeCredential(const CredentialReader::Lookup &lookup);
    void takeAnswer(const std::optional<HttpsAnswer> &answer);
    void takeBody(const QByteArray &body);
    void takeCodex(const Result<CodexUsage> &result);
    void failClaude(const QString &reason, double mostBackoff);
    void endClaudePoll();
    void takeUsage(const Usage &usage);
    void detectWeeklyReset(const Usage &usage);
    void evaluateMilestones(const Usage &usage);
    void clearMilestone();

    MorvaneSettings &m_settings;
    const UsagePorts m_ports;
    const QString m_version;
    CredentialReader m_credentials;
    UsageEndpoint m_endpoint;
    UsageAlerts m_alerts;

    std::optional<Usage> m_usage;
    std::optional<QString> m_unavailableReason;
    std::optional<CodexUsage> m_codexUsage;
    std::optional<QString> m_codexUnavailableReason;
    std::optional<UsageMilestone> m_activeMilestone;
    bool m_keychainBlocked = false;

    Task m_claudeTimer;
    Task m_codexTimer;
    Task m_milestoneDismissTask;
    double m_backoffMultiplier = 1;
    double m_codexBackoffMultiplier = 1;
    bool m_codexPollInFlight = false;
    std::optional<Date> m_lastLiveIngest;
    std::optional<Date> m_claudeRetryAt; ///< the endpoint wants to be left alone until then
    bool m_forceNextClaudePoll = false;  ///< whatever speaks against it
};

} // namespace morvane
