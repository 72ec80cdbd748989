#pragma once

#include "Core/Agents/AgentKind.h"
#include "Platform/HotKeys.h"

#include <QMenu>
#include <QObject>

#include <memory>
#include <vector>

namespace morvane {

class AgentAdapter;
class AgentConnections;
class UpdateManager;

/// The program's menu, shared by the status item and the panel. It is kept up to date while it is
/// closed, since a desktop that draws it may open it without telling us. Owned by `AppDelegate`,
/// outlived by the connections; main thread.
class StatusMenu : public QObject {
    Q_OBJECT

public:
    StatusMenu(AgentConnections &connections, const UpdateManager &updates);

    QMenu &menu() { return *m_menu; }

    /// Shows the key that opens the panel, or why there is none. A key that the desktop has chosen
    /// isn't known.
    void showPanelKey(const HotKey &key, HotKeys::State state, bool isDesktops);

    /// A new version has been installed, and runs from the next start on.
    void offerRestart();

    /// The items that have a key, which works while the menu is open and in each window that they
    /// are added to.
    QList<QAction *> keyedActions() const { return {m_settings, m_quit}; }

signals:
    /// "Open Morvane" was chosen.
    void panelRequested();

    void settingsRequested();

    /// "Check for Updates…", which is there only where a check is possible at all.
    void updateCheckRequested();

    /// The person wants the new version to take over.
    void restartRequested();

private:
    struct AgentItem {
        AgentKind kind;
        QAction *action;
    };

    bool eventFilter(QObject *watched, QEvent *event) override;
    void addItems(const UpdateManager &updates);
    void addAgents();
    void update();
    QString agentText(AgentKind kind) const;
    void list(const std::vector<const AgentAdapter *> &offered);
    QAction *makeItem(const AgentAdapter &adapter);
    void showFailure();

    AgentConnections &m_connections;
    const std::unique_ptr<QMenu> m_menu;
    QAction *m_restart = nullptr;
    QAction *m_panel = nullptr;
    QAction *m_panelKey = nullptr; ///< tells what is wrong with the panel key
    QAction *m_settings = nullptr;
    QAction *m_quit = nullptr;
    QMenu *m_agents = nullptr; ///< "Connected agents"
    std::vector<AgentItem> m_agentItems;
    QAction *m_failureSeparator = nullptr;
    QAction *m_failure = nullptr; ///< what went wrong last, below the agents
};

} // namespace morvane
