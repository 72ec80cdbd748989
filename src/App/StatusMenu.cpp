#include "App/StatusMenu.h"

#include "Core/Agents/AgentAdapter.h"
#include "Core/Hooks/AgentConnections.h"
#include "Core/Shell/BuildInfo.h"
#include "Core/Shell/UpdateManager.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/PlatformWords.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QStyleOptionMenuItem>

#include <algorithm>

namespace morvane {

namespace {

constexpr int failureWidth = 420;

/// Doubles ampersands, which a menu would take for mnemonic marks.
QString menuText(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// Calls the key Super, as its neighbours on the desktop do, where Qt says Meta.
class KeyNamingMenu : public QMenu {
protected:
    void initStyleOption(QStyleOptionMenuItem *option, const QAction *action) const override {
        QMenu::initStyleOption(option, action);
        option->text.replace(QLatin1String("\tMeta+"), QLatin1String("\tSuper+"));
    }
};

} // namespace

StatusMenu::StatusMenu(AgentConnections &connections, const UpdateManager &updates)
    : m_connections(connections), m_menu(std::make_unique<KeyNamingMenu>()) {
    m_menu->setAccessibleName(QStringLiteral("Morvane"));
    addItems(updates);
    m_menu->installEventFilter(this);
    m_agents->installEventFilter(this);
    connect(m_menu.get(), &QMenu::aboutToShow, &m_connections, &AgentConnections::refreshStatus);
    connect(&m_connections, &AgentConnections::statusChanged, this, &StatusMenu::update);
    connect(&m_connections, &AgentConnections::lastErrorChanged, this, &StatusMenu::showFailure);
    update();
}

void StatusMenu::addItems(const UpdateManager &updates) {
    m_menu->addAction(tr("Morvane %1 (build %2)").arg(BuildInfo::version(), BuildInfo::build()))
        ->setEnabled(false);
    m_restart = m_menu->addAction(tr("A new Morvane is installed: restart"), this,
                                  &StatusMenu::restartRequested);
    m_restart->setVisible(false);
    m_menu->addSeparator();
    m_panel = m_menu->addAction(tr("Open Morvane"), this, &StatusMenu::panelRequested);
    m_panel->setShortcutVisibleInContextMenu(true);
    m_panelKey = m_menu->addAction(QString());
    m_panelKey->setEnabled(false);
    m_panelKey->setVisible(false);
    m_settings = m_menu->addAction(tr("Settings…"), Qt::CTRL | Qt::Key_Comma, this,
                                   &StatusMenu::settingsRequested);
    if (updates.isConfigured()) {
        m_menu->addAction(tr("Check for Updates…"), this, &StatusMenu::updateCheckRequested);
    }
    m_menu->addSeparator();
    addAgents();
    m_menu->addSeparator();
    m_quit = m_menu->addAction(tr("Quit Morvane"), Qt::CTRL | Qt::Key_Q,
                               QCoreApplication::instance(), &QCoreApplication::quit);
    for (QAction *action : keyedActions()) {
        action->setShortcutVisibleInContextMenu(true);
    }
}

void StatusMenu::addAgents() {
    m_agents = m_menu->addMenu(QString());
    m_agents->setAccessibleName(tr("Connected agents"));
    m_agents->setToolTipsVisible(true);
    m_failureSeparator = m_agents->addSeparator();
    m_failure = m_agents->addAction(QString());
    m_failure->setEnabled(false);
}

void StatusMenu::offerRestart() {
    m_restart->setVisible(true);
}

void StatusMenu::showPanelKey(const HotKey &key, HotKeys::State state, bool isDesktops) {
    const QString problem = PlatformWords::hotKeyProblem(key, state);
    m_panelKey->setText(menuText(problem));
    m_panelKey->setVisible(!problem.isEmpty());
    m_panel->setShortcut(problem.isEmpty() && !isDesktops ? PlatformWords::keySequence(key)
                                                          : QKeySequence());
}

/// A menu that belongs to no window doesn't handle the keys of its items.
bool StatusMenu::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress) {
        const QKeySequence pressed(static_cast<QKeyEvent *>(event)->keyCombination());
        for (QAction *action : keyedActions()) {
            if (action->shortcut() == pressed) {
                m_menu->close();
                action->trigger();
                return true;
            }
        }
    }
    return QObject::eventFilter(watched, event);
}

void StatusMenu::update() {
    const auto &installed = m_connections.installedAgents();
    list(m_connections.offeredAgents());
    for (const AgentItem &item : m_agentItems) {
        item.action->setChecked(installed.contains(item.kind));
        item.action->setText(menuText(agentText(item.kind)));
    }
    const QString count = installed.isEmpty() ? tr("none") : QString::number(installed.size());
    m_agents->setTitle(tr("Connected agents — %1").arg(count));
    showFailure();
}

/// The agent's name, and what keeps it from running our hooks.
QString StatusMenu::agentText(AgentKind kind) const {
    const QString name = displayName(kind);
    const Health health = m_connections.health(kind);
    if (health.hooksSwitchedOff) {
        return tr("%1 — hooks are switched off in its settings").arg(name);
    }
    return health.awaitsReview ? tr("%1 — review with /hooks").arg(name) : name;
}

/// Keeps the items while the list is the same: a desktop that draws the menu refers to those it was
/// told of.
void StatusMenu::list(const std::vector<const AgentAdapter *> &offered) {
    if (std::ranges::equal(offered, m_agentItems, {}, &AgentAdapter::kind, &AgentItem::kind)) {
        return;
    }
    for (const AgentItem &item : m_agentItems) {
        m_agents->removeAction(item.action);
        // It may be the one that was just chosen.
        item.action->deleteLater();
    }
    m_agentItems.clear();
    for (const AgentAdapter *adapter : offered) {
        m_agentItems.push_back({adapter->kind(), makeItem(*adapter)});
        m_agents->insertAction(m_failureSeparator, m_agentItems.back().action);
    }
}

/// A menu puts the check mark by itself as soon as an item is chosen; the change of the status that
/// follows sets it right whatever came of it.
QAction *StatusMenu::makeItem(const AgentAdapter &adapter) {
    auto *item = new QAction(m_agents);
    item->setCheckable(true);
    item->setEnabled(adapter.isInstallable());
    item->setToolTip(helpMarkup(adapter.integrationDescription()));
    connect(item, &QAction::triggered, this,
            [this, kind = adapter.kind()] { m_connections.toggleHooks(kind); });
    return item;
}

/// Shortens a failure in the middle: it begins with what failed and ends with the reason. Without a
/// failure nothing is measured: Qt's text engine takes a quarter of a megabyte.
void StatusMenu::showFailure() {
    const QString text = m_connections.notice().value_or(QString());
    if (!text.isEmpty()) {
        const QFontMetrics metrics(m_agents->font());
        m_failure->setText(
            menuText(metrics.elidedText(text.simplified(), Qt::ElideMiddle, failureWidth)));
        m_failure->setToolTip(helpMarkup(text));
    }
    m_failure->setVisible(!text.isEmpty());
    m_failureSeparator->setVisible(!text.isEmpty() && !m_agentItems.empty());
    m_agents->setEnabled(!text.isEmpty() || !m_agentItems.empty());
}

} // namespace morvane

#include "moc_StatusMenu.cpp"
