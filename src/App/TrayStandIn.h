#pragma once

#include "Platform/Task.h"

#include <QObject>

namespace morvane {

class AgentConnections;
class MorvaneSettings;
class PresenterManager;
struct PlatformServices;

/// Lets the capsules stand in for the tray where the desktop has none. Owned by `AppController`;
/// main thread.
class TrayStandIn : public QObject {
    Q_OBJECT

public:
    /// All must outlive it.
    TrayStandIn(MorvaneSettings &settings, AgentConnections &connections,
                const PlatformServices &platform);

    /// Called once, when the presenters exist; they must outlive it as well.
    void start(PresenterManager &presenters);

    /// Whether there is an icon to click on: the desktop has a place for it, and the person wants
    /// it.
    bool hasTrayIcon() const;

    /// While the welcome is shown, the capsule that it tells a newcomer to look for is shown too.
    void setWelcoming(bool isWelcoming);

private:
    void refresh();

    MorvaneSettings &m_settings;
    AgentConnections &m_connections;
    const PlatformServices &m_platform;
    PresenterManager *m_presenters = nullptr; ///< none before `start`
    Task m_task;
    bool m_isWelcoming = false;
};

} // namespace morvane
