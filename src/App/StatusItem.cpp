#include "App/StatusItem.h"

#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Platform/StatusItemHost.h"
#include "Presentation/Mascot/MenuBarIcon.h"
#include "Presentation/Style/StateLook.h"

#include <QCursor>
#include <QMenu>
#include <QSystemTrayIcon>

#include <utility>

namespace morvane {

StatusItem::StatusItem(SessionStore &store, MorvaneSettings &settings, StatusItemHost &host,
                       QMenu &menu)
    : m_store(store), m_settings(settings), m_host(host), m_menu(menu) {
    connect(&m_host, &StatusItemHost::presenceChanged, this, &StatusItem::refreshVisibility);
    connect(&m_settings, &MorvaneSettings::changed, this, &StatusItem::refreshVisibility);
    connect(&m_store, &SessionStore::sessionsChanged, this, &StatusItem::updateIcon);
    refreshVisibility();
}

void StatusItem::refreshVisibility() {
    if (!m_settings.showMenuBarIcon() || !m_host.isPresent()) {
        delete std::exchange(m_item, nullptr);
    } else if (!m_item) {
        build();
    }
}

void StatusItem::build() {
    m_item = new QSystemTrayIcon(this);
    m_item->setToolTip(QStringLiteral("Morvane"));
    m_item->setContextMenu(&m_menu);
    connect(m_item, &QSystemTrayIcon::activated, this, [this](auto reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            emit activated();
        } else if (reason == QSystemTrayIcon::Context) {
            // The host doesn't draw menus itself.
            m_menu.popup(QCursor::pos());
        }
    });
    updateIcon();
    m_item->show();
}

/// Only for a new state: the store changes with every event, and each picture is drawn, packed and
/// sent to the desktop.
void StatusItem::updateIcon() {
    if (!m_item) {
        return;
    }
    const auto state = m_store.aggregatedState();
    if (m_item->icon().isNull() || state != m_shownState) {
        m_shownState = state;
        m_item->setIcon(MenuBarIcon::icon(StateLook::of(state).tray, state));
    }
}

} // namespace morvane

#include "moc_StatusItem.cpp"
