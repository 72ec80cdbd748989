#pragma once

#include "App/AppController.h"
#include "App/StatusItem.h"
#include "App/StatusMenu.h"

#include <memory>

namespace morvane {

/// What belongs to the process rather than to a session: it makes the controller, the status item
/// and its menu, and answers to a second launch. Owned by `main`; main thread.
class AppDelegate {
public:
    AppDelegate(MorvaneSettings &settings, const PlatformServices &platform);

    /// Called once, when the main loop is about to run.
    void applicationDidFinishLaunching();

    /// The program was started again while it ran: the person is looking for it.
    void applicationShouldHandleReopen();

private:
    void makeMenu();
    void showFirstRunIfNeeded();
    void showPanel();

    MorvaneSettings &m_settings;
    const PlatformServices &m_platform;
    std::unique_ptr<AppController> m_controller;
    std::unique_ptr<StatusMenu> m_menu; ///< none without a screen
    std::unique_ptr<StatusItem> m_statusItem;
};

} // namespace morvane
