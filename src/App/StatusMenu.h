#pragma once

#include "Core/AgentKind.h"

#include <QMenu>
#include <QObject>

#include <vector>

namespace morvane {

class AgentAdapter;
class AppController;

/// The program's menu, the same behind the status item and on the panel. What it shows is also
/// right when it opens without telling, as it may where the desktop draws it. Owned by
/// `AppDelegate`, outlived by the controller; main thread.
class StatusMenu : public QObject {
    Q_OBJECT

public:
    explicit StatusMenu(AppController &controller);

    QMenu &menu() { return m_menu; }

signals:
    /// "Open Morvane" was chosen.
    void panelRequested();

private:
    struct AgentItem {
        AgentKind kind;
        QAction *action;
    };

    void menuNeedsUpdate();
    void update();
    void list(const std::vector<const AgentAdapter *> &offered);
    QAction *makeItem(const AgentAdapter &adapter);
    void showFailure();
    void toggleAgent(AgentKind kind);

    AppController &m_controller;
    QMenu m_menu;
    QMenu *m_agents; ///< "Connected agents"
    std::vector<AgentItem> m_agentItems;
    QAction *m_failureSeparator;
    QAction *m_failure; ///< what went wrong last, below the agents
};

} // namespace morvane
