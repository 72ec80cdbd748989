#pragma once

#include "Core/Agents/AgentKind.h"
#include "Core/Usage/ClaudeLimits.h"
#include "Core/Usage/CodexLimits.h"
#include "Core/Usage/UsageMilestones.h"
#include "Core/Usage/UsagePorts.h"

#include <QObject>

#include <functional>
#include <optional>

namespace morvane {

class MorvaneSettings;

/// How much of the subscriptions' limits is used, and the schedule of asking. Two independent
/// pollers, `ClaudeLimits` and `CodexLimits`, and the milestones of Claude's limits.
///
/// Nothing here can confront the person with a password prompt. A poller that fails backs off. Each
/// poll schedules the next as it ends, so nothing piles up while the machine sleeps.
///
/// Owned by `AppController`; main thread.
class UsagePoller : public QObject {
    Q_OBJECT

public:
    /// `version` is this program's, for Codex. `milestoneEligibility` is true while there is work
    /// for which a milestone is worth telling.
    UsagePoller(MorvaneSettings &settings, const UsagePorts &ports, const QString &version,
                std::function<bool()> milestoneEligibility);

    // Published. A reason, for a person, says why figures are missing or are not the latest.

    const std::optional<Usage> &usage() const { return m_claude.usage(); }
    const std::optional<QString> &unavailableReason() const { return m_claude.unavailableReason(); }
    const std::optional<CodexUsage> &codexUsage() const { return m_codex.usage(); }
    const std::optional<QString> &codexUnavailableReason() const {
        return m_codex.unavailableReason();
    }
    /// The milestone to show now.
    const std::optional<UsageMilestone> &activeMilestone() const {
        return m_milestones.activeMilestone();
    }
    /// The secret store is locked or didn't answer, and isn't asked any more.
    bool keychainBlocked() const { return m_claude.keychainBlocked(); }

    /// True when figures are older than two polls take: then a bar has to say when they were read.
    static bool areOld(Date fetchedAt, Date now) {
        return now - fetchedAt > 2 * Backoff::ordinaryInterval;
    }

    // True when at least 85 % of a window is used up.
    bool approachingClaudeLimit() const { return m_claude.approachingLimit(); }
    bool approachingCodexLimit() const { return m_codex.approachingLimit(); }

    /// To be called when what `milestoneEligibility` says may have changed.
    void refreshMilestoneEligibility();

    /// Follows the setting: starts both pollers, or stops them and forgets what they have read.
    void setEnabled(bool enabled);

    /// Asks at once, on the person's request, whatever has kept it from asking. Does nothing while
    /// the limits are turned off.
    void refreshNow();

    /// The person allows another try at the secret store.
    void retryKeychainAccess();

    /// Takes what an agent has passed to its status line. Data is dropped when it can't be
    /// understood, has a window that is over, or a lower utilization than is already known.
    void ingestLive(const QByteArray &data, AgentKind agent);

    /// Asks no more, until it is enabled or refreshed.
    void stop();

signals:
    /// Something published has changed.
    void changed();
    /// A milestone is reached; sent once for each that is told.
    void milestoneEvents(const morvane::UsageMilestone &milestone);

private:
    MorvaneSettings &m_settings;
    UsageMilestones m_milestones;
    ClaudeLimits m_claude;
    CodexLimits m_codex;
};

} // namespace morvane
