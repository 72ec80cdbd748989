#pragma once

#include "App/PanelKeys.h"
#include "App/PlatformServices.h"
#include "App/TrayStandIn.h"
#include "Core/Hooks/AgentConnections.h"
#include "Core/Intake/EventServer.h"
#include "Core/Navigation/JumpService.h"
#include "Core/Navigation/TerminalReply.h"
#include "Core/Sessions/AgentProcesses.h"
#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Shell/SoundManager.h"
#include "Core/Shell/UpdateManager.h"
#include "Core/Usage/UsagePoller.h"
#include "Presentation/Mascot/PixelTimeline.h"
#include "Presentation/Overlay/ReplyDrafts.h"
#include "Presentation/PresenterManager.h"

#include <QObject>

#include <atomic>
#include <memory>

namespace morvane {

/// Owns the long-lived objects and wires them together, and offers the actions that touch several
/// of them; does no work of its own beyond that. Made once by `AppDelegate` and kept for the life
/// of the process. Main thread. The actions read and write small files where they are called.
class AppController : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the controller.
    AppController(MorvaneSettings &settings, const PlatformServices &platform);

    SessionStore &store() { return m_store; }

    /// How much of the limits is used.
    UsagePoller &usage() { return m_usage; }

    /// Which agents are connected, and how to change that.
    AgentConnections &connections() { return m_connections; }

    SoundManager &sound() { return m_sound; }

    UpdateManager &updates() { return m_updates; }

    PanelKeys &panelKeys() { return m_panelKeys; }

    /// None before `start`.
    PresenterManager *presenterManager() { return m_presenterManager.get(); }

    TrayStandIn &trayStandIn() { return m_trayStandIn; }

    /// Called once. If the server can't be started, everything else still is.
    void start();

    /// Where the server listens, or that it isn't running, in words for a person.
    QString serverStatus() const;

    // How the desktop treats this program, as of the connections' last `refreshStatus`.

    bool launchAtLogin() const { return m_launchAtLogin; }
    bool canFocusWindows() const { return m_canFocusWindows; }

    // Actions. The first two set the connections' `lastError` on failure, and refresh their status.

    /// Turning them off releases what waits; the connected agents' hooks are rewritten.
    void setApprovalsEnabled(bool enabled);

    void setLaunchAtLogin(bool enabled);

    /// Turning it off stops all requests for limits, and forgets what was read.
    void setUsageEnabled(bool enabled);

    /// The person allows another try at the secret store, and wants the limits now.
    void retryKeychainAccess() { m_usage.retryKeychainAccess(); }

    /// Marks the session as seen, and goes to where it runs.
    void select(const Session &session);

    /// Goes to where a finished session has run, and forgets the sessions of its folder.
    void reopenCompleted(const CompletedRecord &record);

    /// Marks the session as seen, and types the text into its terminal. Nothing is sent to a
    /// session that has gone on meanwhile, where the text would answer something else.
    void reply(const Session &session, const QString &text, const TerminalReply::Told &told);

    /// Removes everything of ours from this machine except the program, which goes on running.
    /// Returns a report of what was removed and what could not be, one item a line.
    QString removeEverything();

signals:
    /// A view asks for the settings window.
    void morvaneOpenSettings();

private:
    SessionSurroundings surroundings();
    std::unique_ptr<EventServer> makeServer();
    void takeEvent(const HookEvent &event);
    void startServer();
    void rememberBoundPort();
    void connectSound();
    void tellMilestones();
    void readTranscripts();
    void restoreSessions();
    void createPresenters();
    /// Whether a hook that waits can be answered from the panel. Safe from any thread.
    bool canBeAnswered() const;
    void releaseWhoeverWaits();
    void watchTerminals();
    bool isWhereSessionsRun(const QString &bundleID) const;

    JumpService::Means means() const;
    PanelKeys::Actions keyActions();
    void handleDigit(int index);
    void dismissPanels();

    MorvaneSettings &m_settings;
    const PlatformServices &m_platform;
    SessionStore m_store;
    ReplyDrafts m_replyDrafts;
    SoundManager m_sound;
    UsagePoller m_usage;
    UpdateManager m_updates;
    Task m_installPing;
    AgentProcesses m_agentProcesses;
    AgentConnections m_connections;
    TerminalReply m_terminalReply;
    /// False while no display has a panel: nobody could answer, so the agents ask at once.
    std::atomic<bool> m_isShown = true;
    std::unique_ptr<EventServer> m_server;
    std::unique_ptr<PixelTimeline> m_timeline; ///< outlives the panels
    PanelKeys m_panelKeys;                     ///< the same: they report to it when they close
    std::unique_ptr<PresenterManager> m_presenterManager;
    TrayStandIn m_trayStandIn;
    bool m_launchAtLogin = false;
    bool m_canFocusWindows = false;
};

} // namespace morvane
