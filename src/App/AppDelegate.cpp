#include "App/AppDelegate.h"

namespace morvane {

AppDelegate::AppDelegate(MorvaneSettings &settings, const PlatformServices &platform)
    : m_settings(settings), m_platform(platform) {}

void AppDelegate::applicationDidFinishLaunching() {
    m_controller = std::make_unique<AppController>(m_settings, m_platform);
    m_controller->start();
}

void AppDelegate::applicationShouldHandleReopen() {
    if (m_controller && m_controller->presenterManager()) {
        m_controller->presenterManager()->presentPanel();
    }
}

} // namespace morvane
