#pragma once

#include "Core/Adapters/ProgramReleases.h"
#include "Core/Agents/AgentKind.h"
#include "Core/Hooks/Health.h"
#include "Platform/Result.h"
#include "Platform/Scheduler.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace morvane {

class AgentAdapter;
class HookInstaller;
class MorvaneSettings;

/// The agents of this machine and our hooks in them: what is connected, what can be, and how that
/// is changed. Owned by `AppController`; main thread. Reads and writes small files where it is
/// called.
class AgentConnections : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the connections.
    AgentConnections(MorvaneSettings &settings, Scheduler &scheduler);

    /// The last failure, in one sentence, until an agent is connected, disconnected or repaired.
    const std::optional<QString> &lastError() const { return m_lastError; }
    void setLastError(const std::optional<QString> &error);

    /// The last error, and one that nothing mends before the next start.
    void setLastingError(const QString &error);

    /// What there is to tell a person: what the last change has made of settings that couldn't be
    /// understood, or the last failure, or else one that lasts.
    std::optional<QString> notice() const;

    // As of `refreshStatus`.

    const QSet<AgentKind> &installedAgents() const { return m_installedAgents; }

    /// True when each of `mutableAgents`, of which there is one at least, has its own notifications
    /// turned off.
    bool notificationsSuppressed() const { return m_notificationsSuppressed; }

    /// The agents whose status line another tool has set.
    const std::vector<AgentKind> &statusLineBlockedAgents() const {
        return m_statusLineBlockedAgents;
    }

    Health health(AgentKind kind) const { return m_health.value(kind); }

    /// Why nobody can tell what is in the settings of an agent that doesn't look connected; empty
    /// where it can be told.
    QString whyUnknown(AgentKind kind) const { return m_whyUnknown.value(kind); }

    void refreshStatus();

    /// The agents to show to a person: those on this machine, and those that are connected.
    std::vector<const AgentAdapter *> offeredAgents() const;

    /// The agents on this machine whose own notifications can be turned off.
    std::vector<const AgentAdapter *> mutableAgents() const;

    /// True when the panel could answer anything at all.
    bool hasDecidableAgent() const;

    // Actions. What fails goes into `lastError`; each refreshes the status.

    void installHooks(AgentKind kind);
    void uninstallHooks(AgentKind kind);
    /// Whichever of the two changes something.
    void toggleHooks(AgentKind kind);
    void repairHooks(AgentKind kind);
    void setNotificationsSuppressed(bool suppressed);

    /// Hooks that wait and hooks that don't differ, so the hooks of agents that can be answered are
    /// written anew when approvals are turned on or off. A failure turns them off.
    void renewDecidable();

    /// At every start, since what the agents call carries the port and the token. A failure here is
    /// no reason not to start: agents that reach nobody go on as if there were no hook.
    void renew();

    /// Looks for agents that were never offered before, now and every half an hour.
    void watchForNewAgents();

    /// Counts every agent on this machine as offered.
    void markAllPresentAgentsKnown();

    /// Disconnects every agent, gives it back its own notifications where we have switched them
    /// off, and removes our scripts. Yields what was removed and what could not be, an item each.
    QStringList removeAll();

    /// The item for what could not be removed, and why, where that is known.
    static QString couldNotRemove(const QString &what, const QString &why = {});

signals:
    /// Or the notice.
    void lastErrorChanged();
    void statusChanged();

    /// Agents have appeared on this machine. Each is told once, and counts as offered then; while
    /// nobody is connected none is.
    void newAgentsDetected(const std::vector<morvane::AgentKind> &kinds);

private:
    /// Any form will do to find ours, and to take it out; what is written takes the right one.
    std::unique_ptr<HookInstaller> makeInstaller(const AgentAdapter &form) const;
    /// For the release of the agent that is installed. May read the agent's settings.
    std::unique_ptr<HookInstaller> makeInstaller(AgentKind kind) const;
    const AgentAdapter &installedForm(AgentKind kind) const;
    std::vector<const AgentAdapter *> connectedAgents() const;
    /// `failed` is the sentence for a failure, of the agent's name and the reason.
    void perform(const AgentAdapter &form, const QString &failed,
                 Result<void> (HookInstaller::*operation)() const);
    /// Keeps what there is to tell of settings that have made way.
    Result<void> change(const AgentAdapter &form,
                        const std::function<Result<void>(const HookInstaller &)> &operation);
    void scheduleNewAgentCheck();
    void checkForNewAgents();
    void markAgentsKnown(const std::vector<const AgentAdapter *> &adapters);

    MorvaneSettings &m_settings;
    Scheduler &m_scheduler;
    std::optional<QString> m_lastError;
    std::optional<QString> m_lastingError;
    std::optional<QString> m_outcome;
    QSet<AgentKind> m_installedAgents;
    bool m_notificationsSuppressed = false;
    std::vector<AgentKind> m_statusLineBlockedAgents;
    QHash<AgentKind, Health> m_health;
    QHash<AgentKind, QString> m_whyUnknown;
    mutable ProgramReleases m_programs;
    Task m_newAgentTimer;
};

} // namespace morvane
