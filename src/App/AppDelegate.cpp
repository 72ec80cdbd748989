#include "App/AppDelegate.h"

namespace morvane {

AppDelegate::AppDelegate(MorvaneSettings &settings, const PlatformServices &platform)
    : m_settings(settings), m_platform(platform) {}

void AppDelegate::applicationDidFinishLaunching() {
    m_controller = std::make_unique<AppController>(m_settings, m_platform);
    m_controller->start();
    if (m_controller->presenterManager()) {
        makeMenu();
    }
    showFirstRunIfNeeded();
}

void AppDelegate::makeMenu() {
    m_menu = std::make_unique<StatusMenu>(*m_controller);
    QObject::connect(m_menu.get(), &StatusMenu::panelRequested, m_menu.get(),
                     [this] { showPanel(); });
    m_controller->presenterManager()->setContextMenu(&m_menu->menu());
    m_statusItem = std::make_unique<StatusItem>(m_controller->store(), m_settings,
                                                *m_platform.statusItemHost, m_menu->menu());
    QObject::connect(m_statusItem.get(), &StatusItem::activated, m_statusItem.get(),
                     [this] { showPanel(); });
}

void AppDelegate::applicationShouldHandleReopen() {
    showPanel();
}

/// With no session yet there would be nothing on screen, and a newcomer would look in vain.
void AppDelegate::showFirstRunIfNeeded() {
    if (!m_settings.hasCompletedFirstRun()) {
        showPanel();
    }
}

void AppDelegate::showPanel() {
    if (m_controller && m_controller->presenterManager()) {
        m_controller->presenterManager()->presentPanel();
    }
}

} // namespace morvane
