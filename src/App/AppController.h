#pragma once

#include "App/PlatformServices.h"
#include "Core/Agents/AgentKind.h"
#include "Core/Intake/EventServer.h"
#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Presentation/Mascot/PixelTimeline.h"
#include "Presentation/PresenterManager.h"

#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <vector>

namespace morvane {

class AgentAdapter;
class HookInstaller;

/// Owns the long-lived objects and wires them together, and offers the actions that touch several
/// of them; does no work of its own beyond that. Made once by `AppDelegate` and kept for the life
/// of the process. Main thread. The actions read and write small files where they are called.
class AppController : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the controller.
    AppController(MorvaneSettings &settings, const PlatformServices &platform);

    SessionStore &store() { return m_store; }

    /// None unless a port could be bound.
    EventServer *server() { return m_server.get(); }

    /// None before `start`, and without a screen.
    PresenterManager *presenterManager() { return m_presenterManager.get(); }

    /// To be set before `start`, if at all: agents have appeared on this machine that were never
    /// offered before. Each is told once.
    std::function<void(const std::vector<AgentKind> &)> onNewAgentsDetected;

    /// Called once. A server that can't be started doesn't keep the rest from it.
    void start();

    /// Where the server listens, or that it doesn't, for a person.
    QString serverStatus() const;

    /// The last failure, in one sentence, until an agent is connected, disconnected or repaired.
    const std::optional<QString> &lastError() const { return m_lastError; }

    // The state of the machine's agents and of this program's place on it, as of `refreshStatus`.

    const QSet<AgentKind> &installedAgents() const { return m_installedAgents; }

    /// True when each of `mutableAgents`, of which there is one at least, has its own notifications
    /// turned off.
    bool notificationsSuppressed() const { return m_notificationsSuppressed; }

    bool launchAtLogin() const { return m_launchAtLogin; }
    bool canFocusWindows() const { return m_canFocusWindows; }

    /// The agents whose status line another tool has set.
    const std::vector<AgentKind> &statusLineBlockedAgents() const {
        return m_statusLineBlockedAgents;
    }

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
    void repairHooks(AgentKind kind);

    /// Hooks that wait and hooks that don't differ, so the connected agents' are written anew; a
    /// failure at that turns approvals off.
    void setApprovalsEnabled(bool enabled);

    void setNotificationsSuppressed(bool suppressed);
    void setLaunchAtLogin(bool enabled);

    /// Marks the session as seen, and makes way for its terminal.
    void select(const Session &session);

    /// Makes way for the terminal of a finished session.
    void reopenCompleted(const CompletedRecord &record);

    /// Takes everything of ours off this machine but the program, which goes on running. Yields a
    /// report of what was removed and what could not be, an item a line.
    QString removeEverything();

    /// Counts every agent on this machine as offered.
    void markAllPresentAgentsKnown();

signals:
    void lastErrorChanged();
    void statusChanged();

    /// A view asks for the settings window.
    void morvaneOpenSettings();

private:
    SessionSurroundings surroundings();
    std::unique_ptr<EventServer> makeServer();
    void startServer();
    void rememberBoundPort();
    void renewConnections();
    void readTranscripts();
    void restoreSessions();
    void watchForNewAgents();
    void scheduleNewAgentCheck();
    void checkForNewAgents();
    void markAgentsKnown(const std::vector<const AgentAdapter *> &adapters);
    void createPresenters();
    void expandedChanged(bool expanded);
    void watchTerminals();
    void setLastError(const std::optional<QString> &error);

    HookInstaller makeInstaller(const AgentAdapter &adapter) const;
    std::vector<const AgentAdapter *> connectedAgents() const;
    void perform(AgentKind kind, const char *action,
                 std::optional<Failure> (HookInstaller::*operation)() const);
    void dismissPanels();

    MorvaneSettings &m_settings;
    const PlatformServices &m_platform;
    SessionStore m_store;
    std::unique_ptr<EventServer> m_server;
    std::unique_ptr<PixelTimeline> m_timeline; ///< outlives the panels
    std::unique_ptr<PresenterManager> m_presenterManager;
    int m_expandedCount = 0; ///< presenters whose panel is open, never below 0
    std::optional<QString> m_lastError;
    QSet<AgentKind> m_installedAgents;
    bool m_notificationsSuppressed = false;
    bool m_launchAtLogin = false;
    bool m_canFocusWindows = false;
    std::vector<AgentKind> m_statusLineBlockedAgents;
    Task m_newAgentTimer;
};

} // namespace morvane
