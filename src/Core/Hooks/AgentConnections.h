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

/// The agents on this machine and our hooks in them: which are connected, which can be, and the
/// actions that change that. Owned by `AppController`; main thread. Reads and writes small files
/// synchronously.
class AgentConnections : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the connections.
    AgentConnections(MorvaneSettings &settings, Scheduler &scheduler);

    /// The last failure, in one sentence, until an agent is connected, disconnected or repaired.
    const std::optional<QString> &lastError() const { return m_lastError; }
    void setLastError(const std::optional<QString> &error);

    /// Sets the last error, and keeps it as one that lasts until the next start.
    void setLastingError(const QString &error);

    /// What to tell a person: what became of settings that couldn't be understood in the last
    /// change, else the last failure, else the lasting one.
    std::optional<QString> notice() const;

    // These are as of the last `refreshStatus`.

    const QSet<AgentKind> &installedAgents() const { return m_installedAgents; }

    /// True when there is at least one of `mutableAgents` and all of them have their own
    /// notifications turned off.
    bool notificationsSuppressed() const { return m_notificationsSuppressed; }

    /// The agents whose status line another tool has set.
    const std::vector<AgentKind> &statusLineBlockedAgents() const {
        return m_statusLineBlockedAgents;
    }

    Health health(AgentKind kind) const { return m_health.value(kind); }

    /// Why the settings of an agent that doesn't look connected can't be read or understood; empty
    /// otherwise.
    QString whyUnknown(AgentKind kind) const { return m_whyUnknown.value(kind); }

    void refreshStatus();

    /// The agents to show to a person: those on this machine, and those that are connected.
    std::vector<const AgentAdapter *> offeredAgents() const;

    /// The agents on this machine whose own notifications can be turned off.
    std::vector<const AgentAdapter *> mutableAgents() const;

    /// True when the panel could answer anything at all.
    bool hasDecidableAgent() const;

    // Actions. Those up to `rewriteDecisionHooks` put a failure into `lastError` and refresh the
    // status.

    void installHooks(AgentKind kind);
    void uninstallHooks(AgentKind kind);
    /// Disconnects a connected agent, and connects any other.
    void toggleHooks(AgentKind kind);
    void repairHooks(AgentKind kind);
    void setNotificationsSuppressed(bool suppressed);

    /// Rewrites the hooks of agents that can be answered, after approvals were turned on or off: a
    /// hook that waits has another entry than one that doesn't. A failure turns approvals off.
    void rewriteDecisionHooks();

    /// To be called at every start, since what agents run carries the port and the token. Failures
    /// are ignored: an agent whose hook reaches nobody goes on as if there were no hook.
    void renew();

    /// Looks for agents that were never offered before, now and every half an hour.
    void watchForNewAgents();

    /// Counts every agent on this machine as offered.
    void markAllPresentAgentsKnown();

    /// Disconnects every agent, gives it back its own notifications where we have switched them
    /// off, and removes our scripts. Returns an item for each that was removed or couldn't be.
    QStringList removeAll();

    /// The item for a thing that couldn't be removed, and why, where that is known.
    static QString couldNotRemove(const QString &what, const QString &why = {});

signals:
    /// The last error or the notice may have changed.
    void lastErrorChanged();
    void statusChanged();

    /// Agents have appeared on this machine. Each is reported once and counts as offered from then
    /// on; while nobody is connected to this signal, none is.
    void newAgentsDetected(const std::vector<morvane::AgentKind> &kinds);

private:
    /// Any form can find and remove our hooks; writing takes that of the installed release.
    std::unique_ptr<HookInstaller> makeInstaller(const AgentAdapter &form) const;
    /// For the release of the agent that is installed. May read the agent's settings.
    std::unique_ptr<HookInstaller> makeInstaller(AgentKind kind) const;
    const AgentAdapter &installedForm(AgentKind kind) const;
    std::vector<const AgentAdapter *> connectedAgents() const;
    /// `failed` is the sentence for a failure, with places for the agent's name and the reason.
    void perform(const AgentAdapter &form, const QString &failed,
                 Result<void> (HookInstaller::*operation)() const);
    /// Keeps a notice where `operation` replaces settings that couldn't be understood.
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
