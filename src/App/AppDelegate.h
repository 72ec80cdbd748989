#pragma once

#include "App/AppController.h"

#include <memory>

namespace morvane {

/// What belongs to the process rather than to a session: it makes the controller, and answers to a
/// second launch. Owned by `main`; main thread.
class AppDelegate {
public:
    AppDelegate(MorvaneSettings &settings, const PlatformServices &platform);

    /// Called once, when the main loop is about to run.
    void applicationDidFinishLaunching();

    /// The program was started again while it ran: the person is looking for it.
    void applicationShouldHandleReopen();

private:
    void showFirstRunIfNeeded();
    void showPanel();

    MorvaneSettings &m_settings;
    const PlatformServices &m_platform;
    std::unique_ptr<AppController> m_controller;
};

} // namespace morvane
