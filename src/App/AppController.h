#pragma once

#include "App/PlatformServices.h"
#include "Core/AgentKind.h"
#include "Core/EventServer.h"
#include "Core/MorvaneSettings.h"
#include "Core/SessionStore.h"
#include "Presentation/PresenterManager.h"

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace morvane {

class AgentAdapter;

/// Owns the long-lived objects and wires them together; does no work of its own beyond that. Made
/// once by `AppDelegate` and kept for the life of the process. Main thread.
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

    /// The last failure, in one sentence.
    const std::optional<QString> &lastError() const { return m_lastError; }

    /// Counts every agent on this machine as offered.
    void markAllPresentAgentsKnown();

signals:
    void lastErrorChanged();

private:
    SessionSurroundings surroundings();
    std::unique_ptr<EventServer> makeServer();
    void startServer();
    void rememberBoundPort();
    void refreshForwarders();
    void watchForNewAgents();
    void scheduleNewAgentCheck();
    void checkForNewAgents();
    void markAgentsKnown(const std::vector<const AgentAdapter *> &adapters);
    void createPresenters();
    void expandedChanged(bool expanded);
    void select(const Session &session);
    void watchTerminals();
    void setLastError(const QString &error);

    MorvaneSettings &m_settings;
    const PlatformServices &m_platform;
    SessionStore m_store;
    std::unique_ptr<EventServer> m_server;
    std::unique_ptr<PresenterManager> m_presenterManager;
    int m_expandedCount = 0; ///< presenters whose panel is open, never below 0
    std::optional<QString> m_lastError;
    Task m_newAgentTimer;
};

} // namespace morvane
