#include "App/AppController.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Agents/HookTimeout.h"
#include "Core/Navigation/HostApp.h"
#include "Core/Sessions/GitInfo.h"
#include "Core/Sessions/SessionDiscovery.h"
#include "Core/Sessions/SessionOrder.h"
#include "Core/Shell/BuildInfo.h"
#include "Core/Shell/InstallPing.h"
#include "Presentation/Overlay/InlineEditing.h"

#include <QPointer>

#include <algorithm>
#include <optional>
#include <system_error>

namespace morvane {

AppController::AppController(MorvaneSettings &settings, const PlatformServices &platform)
    : m_settings(settings), m_platform(platform),
      m_store(settings, surroundings(), *platform.scheduler), m_replyDrafts(m_store),
      m_sound(settings, *platform.scheduler, *platform.sounds),
      m_usage(settings,
              {*platform.scheduler, *platform.background, *platform.secrets, *platform.https,
               *platform.dialogue},
              BuildInfo::version(), [this] { return m_store.hasWorkingUsageMilestoneSession(); }),
      m_updates(settings.defaults(), {*platform.https, *platform.scheduler, *platform.background,
                                      *platform.tools, *platform.installer}),
      m_agentProcesses(*platform.processes, *platform.scheduler,
                       [this](const QString &sessionID) { m_store.agentEnded(sessionID); }),
      m_connections(settings, *platform.scheduler),
      m_terminalReply(*platform.tools, *platform.scripting, *platform.processes,
                      *platform.scheduler),
      m_panelKeys(*platform.hotKeys, *platform.scheduler, InlineEditing::shared(), keyActions()),
      m_trayStandIn(settings, m_connections, platform) {
    connect(&m_store, &SessionStore::sessionRemoved, this,
            [this](const QString &sessionID) { m_agentProcesses.forget(sessionID); });
    connect(&m_connections, &AgentConnections::statusChanged, this, [this] {
        m_launchAtLogin = m_platform.loginItem->isEnabled();
        m_canFocusWindows = m_platform.hostWindows->canFocusWindows();
        m_panelKeys.retry();
    });
    connect(&m_settings, &MorvaneSettings::changed, this,
            [this] { m_panelKeys.setPanelKey(m_settings.panelKey()); });
}

SessionSurroundings AppController::surroundings() {
    return {
        &GitInfo::branch,
        [this](const QString &cwd) { return m_settings.name(cwd); },
        [this](const std::optional<QString> &hostBundleID,
               const std::optional<QString> &termProgram) {
            return HostApp::displayName(hostBundleID, termProgram, *m_platform.applications);
        },
    };
}

/// The order is part of the design: the forwarders need the port, the panels need a store that is
/// fed, and nothing waits for anything that may take long.
void AppController::start() {
    startServer();
    if (m_server) {
        rememberBoundPort();
        m_connections.renew();
    }
    connectSound();
    tellMilestones();
    readTranscripts();
    m_updates.start();
    m_installPing = InstallPing::sendIfNeeded(m_settings, *m_platform.https, *m_platform.scheduler);
    restoreSessions();
    if (m_settings.hasCompletedFirstRun()) {
        m_connections.watchForNewAgents();
    }
    m_usage.setEnabled(m_settings.usageEnabled());
    createPresenters();
    m_trayStandIn.start(*m_presenterManager);
    m_panelKeys.start(m_settings.panelKey());
    watchTerminals();
    m_connections.refreshStatus();
}

std::unique_ptr<EventServer> AppController::makeServer() {
    // What the server has sent to the main thread may arrive after this object's end.
    const QPointer<AppController> weak(this);
    EventServer::Handlers handlers;
    handlers.onEvent = [weak](const HookEvent &event) {
        if (weak) {
            weak->takeEvent(event);
        }
    };
    handlers.onDecisionExpired = [weak](const QString &id) {
        if (weak) {
            weak->m_store.approvalExpired(id);
        }
    };
    handlers.onDecisionHungUp = [weak](const QString &id) {
        if (weak) {
            weak->m_store.approvalHungUp(id);
        }
    };
    handlers.onUsagePayload = [weak](AgentKind agent, const QByteArray &body) {
        if (weak) {
            weak->m_usage.ingestLive(body, agent);
        }
    };
    handlers.decisionsEnabled = [this] { return canBeAnswered(); };
    handlers.fileOf = [&processes = *m_platform.processes](const auto &process, const auto &path) {
        return processes.fileOf(process, path);
    };
    m_store.resolveDecision = [this](const QString &id, const AgentDecision &decision) {
        if (m_server) {
            m_server->resolve(id, decision);
        }
    };
    return std::make_unique<EventServer>(m_settings.eventToken(), m_settings.port(), handlers,
                                         *m_platform.scheduler);
}

bool AppController::canBeAnswered() const {
    return m_settings.approvalsEnabled() && m_isShown;
}

void AppController::takeEvent(const HookEvent &event) {
    m_store.apply(event);
    // The hook was on its way when approvals were switched off, or the last panel went.
    if (event.decisionID && !canBeAnswered()) {
        m_store.releaseApprovals();
    }
    if (event.process && m_store.sessions().contains(event.sessionID)) {
        const Seconds limit(event.decisionID ? HookTimeout::decision : HookTimeout::event);
        m_agentProcesses.told(event.sessionID, *event.process, limit);
    }
}

void AppController::startServer() {
    Result<void> started;
    try {
        m_server = makeServer();
        started = m_server->start();
    } catch (const std::system_error &error) { // no descriptor or no thread is left for it
        started = Failure{QString::fromLocal8Bit(error.what())};
    }
    if (!started) {
        m_server.reset();
        m_connections.setLastingError(
            tr("Event server failed to start: %1").arg(started.error().message));
    }
}

/// The next start begins at the port that last worked.
void AppController::rememberBoundPort() {
    if (m_server->boundPort() != m_settings.port()) {
        m_settings.setPort(m_server->boundPort());
    }
}

void AppController::connectSound() {
    connect(&m_store, &SessionStore::stateChanges, this,
            [this](SessionState state) { m_sound.sessionTransitioned(state); });
    connect(&m_usage, &UsagePoller::milestoneEvents, this,
            [this](const UsageMilestone &milestone) { m_sound.usageReached(milestone); });
}

/// A milestone is reported only while a session works towards it.
void AppController::tellMilestones() {
    m_usage.refreshMilestoneEligibility();
    connect(&m_store, &SessionStore::sessionsChanged, &m_usage,
            &UsagePoller::refreshMilestoneEligibility);
}

void AppController::readTranscripts() {
    m_store.readTranscript = [this](AgentKind agent, const QString &path,
                                    SessionTranscripts::Use use) {
        m_platform.background->compute(
            [agent, path] {
                const auto release = AgentRegistry::adapter(agent).transcriptRelease(path);
                return AgentRegistry::adapter(agent, release).readTranscript(path);
            },
            *m_platform.scheduler, &m_store, std::move(use));
    };
}

/// Agents that are already running send no hook until their next turn.
void AppController::restoreSessions() {
    m_platform.background->compute(
        [maxAge = m_settings.autoClearAfter(), now = m_platform.scheduler->now(),
         &processes = *m_platform.processes] {
            return SessionDiscovery::scan(maxAge, now, processes);
        },
        *m_platform.scheduler, this,
        [this](const QList<DiscoveredSession> &found) { m_store.restore(found); });
}

QString AppController::serverStatus() const {
    return m_server ? tr("listening on 127.0.0.1:%1").arg(m_server->boundPort())
                    : tr("not running");
}

void AppController::createPresenters() {
    const PanelActions actions{
        .onDecide = [this](const QString &sessionID,
                           const AgentDecision &decision) { m_store.decide(sessionID, decision); },
        .onAnswer = [this](const QString &sessionID, const QString &question,
                           const QString &option) { m_store.answer(sessionID, question, option); },
        .onSelect = [this](const Session &session) { select(session); },
        .onRenameCommit = [this](const QString &cwd,
                                 const QString &name) { m_store.renameCwd(cwd, name); },
        .onReopen = [this](const CompletedRecord &record) { reopenCompleted(record); },
        .onReply = [this](const Session &session, const QString &text,
                          const TerminalReply::Told &told) { reply(session, text, told); },
        .canReply =
            [this](const Session &session) {
                return SessionOrder::hasItsPane(session, m_store.sessions()) &&
                       HostApp::canBeTypedInto(session, *m_platform.applications,
                                               *m_platform.processes);
            },
        .onOpenSettings = [this] { emit morvaneOpenSettings(); },
        .onRefreshUsage = [this] { m_usage.refreshNow(); },
    };
    m_timeline = std::make_unique<PixelTimeline>(*m_platform.scheduler);
    m_presenterManager = std::make_unique<PresenterManager>(
        PanelContext{m_store, m_usage, m_settings, *m_platform.scheduler, *m_platform.motion,
                     InlineEditing::shared(), *m_timeline, m_replyDrafts, actions,
                     &m_panelKeys.digitShortcuts()},
        *m_platform.displays, *m_platform.overlays, *m_platform.pointer);
    connect(m_presenterManager.get(), &PresenterManager::expandedChanged, &m_panelKeys,
            &PanelKeys::panelExpanded);
    connect(m_presenterManager.get(), &PresenterManager::shownChanged, this, [this](bool isShown) {
        m_isShown = isShown;
        if (!isShown) {
            releaseWhoeverWaits();
        }
    });
    m_presenterManager->start();
}

/// Coming back to a terminal counts as having seen what finished there.
void AppController::watchTerminals() {
    connect(m_platform.foreground.get(), &ForegroundApplication::activated, this,
            [this](const QString &bundleID) {
                if (isWhereSessionsRun(bundleID)) {
                    m_store.acknowledgeDone();
                }
            });
}

bool AppController::isWhereSessionsRun(const QString &bundleID) const {
    const InstalledApplications &applications = *m_platform.applications;
    return HostApp::terminalBundleIDs().contains(bundleID) || applications.isTerminal(bundleID) ||
           std::ranges::any_of(m_store.sessions(), [&](const Session &session) {
               return HostApp::isReportedTerminal(bundleID, session, applications);
           });
}

/// Agents must not wait for a panel that has stopped answering, so what waits is released first.
void AppController::setApprovalsEnabled(bool enabled) {
    m_settings.setApprovalsEnabled(enabled);
    if (!enabled) {
        releaseWhoeverWaits();
    }
    m_connections.rewriteDecisionHooks();
}

void AppController::releaseWhoeverWaits() {
    if (m_server) {
        m_server->releaseAllDecisions();
        m_store.releaseApprovals();
    }
}

void AppController::setLaunchAtLogin(bool enabled) {
    LoginItem &item = *m_platform.loginItem;
    if (const auto changed = enabled ? item.registerItem() : item.unregisterItem(); !changed) {
        m_connections.setLastError(
            tr("Launch-at-login change failed: %1").arg(changed.error().message));
    }
    m_connections.refreshStatus();
}

void AppController::setUsageEnabled(bool enabled) {
    m_settings.setUsageEnabled(enabled);
    m_usage.setEnabled(enabled);
}

void AppController::select(const Session &session) {
    m_store.acknowledge(session.id);
    if (const auto destination = JumpService::Destination::of(session); destination.isPlace()) {
        JumpService::jump(destination, means());
    }
    dismissPanels();
}

void AppController::reopenCompleted(const CompletedRecord &record) {
    JumpService::jump(JumpService::Destination::of(record), means());
    dismissPanels();
    m_store.removeSessions(record.id);
}

void AppController::reply(const Session &session, const QString &text,
                          const TerminalReply::Told &told) {
    m_store.acknowledge(session.id);
    const auto isWanted = [this, id = session.id] {
        const Session now = m_store.sessions().value(id);
        return now.isFinished() && SessionOrder::hasItsPane(now, m_store.sessions());
    };
    if (isWanted()) {
        m_terminalReply.send(text, m_store.sessions().value(session.id), isWanted, told);
    } else {
        told(false);
    }
}

JumpService::Means AppController::means() const {
    return {*m_platform.tools, *m_platform.processes, *m_platform.scripting,
            *m_platform.hostWindows};
}

PanelKeys::Actions AppController::keyActions() {
    return {
        .present = [this] { m_presenterManager->presentPanelToKeys(); },
        .collapse = [this] { m_presenterManager->collapseAllExpanded(); },
        .digit = [this](int index) { handleDigit(index); },
    };
}

/// The digits answer the prompt that is showing, once there was time to read it. Without a prompt
/// they open a finished session, once there was time to read its row.
void AppController::handleDigit(int index) {
    if (const auto session = m_store.sessionAwaitingDecision()) {
        if (m_presenterManager->hasBeenRead(session->id)) {
            m_store.chooseByIndex(session->id, index);
        }
        return;
    }
    if (m_store.hasPendingDecision() || m_store.hasExternalPrompt()) {
        return;
    }
    if (const auto record = m_presenterManager->recordAt(index)) {
        reopenCompleted(*record);
    }
}

void AppController::dismissPanels() {
    if (m_presenterManager) {
        m_presenterManager->dismissAll();
    }
}

QString AppController::removeEverything() {
    // An entry that no longer starts anything is removed too.
    const bool wasAtLogin = m_platform.loginItem->isEnabled();
    const auto removed = m_platform.loginItem->unregisterItem();
    QStringList report = m_connections.removeAll();
    if (!removed || wasAtLogin) {
        const QString name = tr("login item");
        report << (removed ? name
                           : AgentConnections::couldNotRemove(name, removed.error().message));
    }
    // The program may go on running until it is quit, but sends no more requests.
    m_updates.discard();
    setUsageEnabled(false);
    const QString stored = tr("preferences and session history");
    report << (m_settings.removeStored() ? stored : AgentConnections::couldNotRemove(stored));
    return report.join(QStringLiteral("\n• "));
}

} // namespace morvane

#include "moc_AppController.cpp"
