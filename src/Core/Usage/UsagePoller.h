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

/// How much of the subscriptions' limits is used, and when that is asked. Two lines that know
/// nothing of each other, `ClaudeLimits` and `CodexLimits`, and the milestones on Claude's.
///
/// Nothing here can bring a question for a password before the person. A line that fails asks ever
/// more seldom. Each poll arms the next as it ends, so nothing piles up while the machine sleeps.
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
    /// The secret store did not answer, and isn't asked any more.
    bool keychainBlocked() const { return m_claude.keychainBlocked(); }

    /// True when figures were read longer ago than two polls take: then a bar has to say when.
    static bool areOld(Date fetchedAt, Date now) {
        return now - fetchedAt > 2 * Backoff::ordinaryInterval;
    }

    // True with a window that is used up to 85 %.
    bool approachingClaudeLimit() const { return m_claude.approachingLimit(); }
    bool approachingCodexLimit() const { return m_codex.approachingLimit(); }

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
    MorvaneSettings &m_settings;
    UsageMilestones m_milestones;
    ClaudeLimits m_claude;
    CodexLimits m_codex;
};

} // namespace morvane
