#include "App/AppDelegate.h"

namespace morvane {

AppDelegate::AppDelegate(MorvaneSettings &settings, const PlatformServices &platform)
    : m_settings(settings), m_platform(platform) {}

void AppDelegate::applicationDidFinishLaunching() {
    m_controller = std::make_unique<AppController>(m_settings, m_platform);
    m_controller->start();
    showFirstRunIfNeeded();
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
