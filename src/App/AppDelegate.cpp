#include "App/AppDelegate.h"

#include "App/AppController.h"
#include "App/StatusItem.h"
#include "App/StatusMenu.h"

#include <QCoreApplication>
#include <QWindow>

#include <variant>

namespace morvane {

AppDelegate::AppDelegate(MorvaneSettings &settings, const PlatformServices &platform)
    : m_settings(settings), m_platform(platform) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    m_controller = std::make_unique<AppController>(m_settings, m_platform);
    if (!m_platform.hasScreen) {
        m_controller->start();
        return;
    }
    makeMenu();
    offerNewAgents();
    connect(&m_controller->updates(), &UpdateManager::updateFound, this,
            [this] { updateWindow().presentQuietly(); });
    m_controller->start();
    m_controller->presenterManager()->setContextMenu(&m_menu->menu());
    makeStatusItem();
    connect(m_controller.get(), &AppController::morvaneOpenSettings, this,
            &AppDelegate::openSettings);
    showFirstRunIfNeeded();
}

void AppDelegate::offerNewAgents() {
    connect(&m_controller->connections(), &AgentConnections::newAgentsDetected, this,
            [this](const std::vector<AgentKind> &kinds) {
                if (!m_onboardingWindow) {
                    showOnboarding(OnboardingView::NewAgents(kinds));
                }
            });
}

void AppDelegate::makeMenu() {
    m_menu = std::make_unique<StatusMenu>(m_controller->connections(), m_controller->updates());
    connect(m_menu.get(), &StatusMenu::panelRequested, this, &AppDelegate::showPanel);
    connect(m_menu.get(), &StatusMenu::settingsRequested, this, &AppDelegate::openSettings);
    connect(m_menu.get(), &StatusMenu::updateCheckRequested, this, &AppDelegate::checkForUpdates);
    connect(&m_controller->panelKeys(), &PanelKeys::panelKeyStateChanged, m_menu.get(),
            [this] { showPanelKey(); });
    watchForNewVersion();
}

void AppDelegate::showPanelKey() {
    m_menu->showPanelKey(m_settings.panelKey(), panelKeyState(),
                         m_controller->panelKeys().desktopChoosesKeys());
    if (m_settingsWindow) {
        m_settingsWindow->refresh();
    }
    if (m_onboardingWindow) {
        m_onboardingWindow->refresh();
    }
}

HotKeys::State AppDelegate::panelKeyState() const {
    return m_controller->panelKeys().panelKeyState().value_or(HotKeys::State::pending);
}

void AppDelegate::watchForNewVersion() {
    ProgramFile &file = *m_platform.programFile;
    connect(&file, &ProgramFile::replaced, m_menu.get(), &StatusMenu::offerRestart);
    connect(&m_menu->menu(), &QMenu::aboutToShow, &file, &ProgramFile::look);
    connect(m_menu.get(), &StatusMenu::restartRequested, this, &AppDelegate::restartRequested);
}

void AppDelegate::makeStatusItem() {
    m_statusItem = std::make_unique<StatusItem>(m_controller->store(), m_settings,
                                                *m_platform.statusItemHost, m_menu->menu());
    connect(m_statusItem.get(), &StatusItem::activated, this, &AppDelegate::showPanel);
}

/// Without an icon to click on, this is the only way to the panel while nothing runs.
void AppDelegate::applicationShouldHandleReopen() {
    if (!m_controller || !m_platform.hasScreen) {
        return;
    }
    openSettings();
    if (!m_statusItem->isShown()) {
        showPanel();
        m_settingsWindow->windowHandle()->installEventFilter(this);
    }
}

/// The panel may cover the settings that were opened with it, so it closes when the person turns to
/// them.
bool AppDelegate::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress) {
        watched->removeEventFilter(this);
        m_controller->presenterManager()->collapseAllExpanded();
    }
    return QObject::eventFilter(watched, event);
}

/// Quitting in the middle of the welcome counts as having seen it.
void AppDelegate::showFirstRunIfNeeded() {
    if (!m_settings.hasCompletedFirstRun()) {
        m_settings.setHasCompletedFirstRun(true);
        showOnboarding(OnboardingView::FirstRun());
    }
}

/// The windows are destroyed before the controller, so these callbacks may use it.
WindowContext AppDelegate::windowContext() {
    AppController &controller = *m_controller;
    return {
        m_settings,
        controller.connections(),
        controller.usage(),
        controller.updates(),
        *m_platform.scheduler,
        *m_platform.motion,
        *m_platform.statusItemHost,
        {
            .serverStatus = [&controller] { return controller.serverStatus(); },
            .setApprovalsEnabled =
                [&controller](bool enabled) { controller.setApprovalsEnabled(enabled); },
            .setUsageEnabled = [&controller](bool enabled) { controller.setUsageEnabled(enabled); },
            .retryKeychainAccess = [&controller] { controller.retryKeychainAccess(); },
            .launchAtLogin = [&controller] { return controller.launchAtLogin(); },
            .setLaunchAtLogin =
                [&controller](bool enabled) { controller.setLaunchAtLogin(enabled); },
            .canFocusWindows = [&controller] { return controller.canFocusWindows(); },
            .panelKeyState = [this] { return panelKeyState(); },
            .desktopChoosesKeys =
                [&controller] { return controller.panelKeys().desktopChoosesKeys(); },
            .hasTrayIcon = [&controller] { return controller.trayStandIn().hasTrayIcon(); },
            .checkForUpdates = [this] { checkForUpdates(); },
            .testSound = [&controller] { controller.sound().play(QStringLiteral("needs-input")); },
            .testLimitChime = [&controller] { controller.sound().playLimitChime(90); },
            .removeEverything = [&controller] { return controller.removeEverything(); },
            .quit = &QCoreApplication::quit,
        },
    };
}

void AppDelegate::showOnboarding(const OnboardingView::Mode &mode) {
    m_onboardingWindow = std::make_unique<OnboardingWindow>(mode, windowContext());
    m_onboardingWindow->addActions(m_menu->keyedActions());
    connect(m_onboardingWindow.get(), &OnboardingWindow::finished, this,
            [this, mode] { finishOnboarding(mode); });
    if (std::holds_alternative<OnboardingView::FirstRun>(mode)) {
        m_onboardingWindow->present();
    } else {
        // It comes unasked, and a stray key could press its first button, which connects an agent.
        m_onboardingWindow->presentQuietly();
    }
    m_controller->trayStandIn().setWelcoming(true);
}

void AppDelegate::finishOnboarding(const OnboardingView::Mode &mode) {
    if (!m_onboardingWindow) {
        return;
    }
    if (std::holds_alternative<OnboardingView::FirstRun>(mode)) {
        m_controller->connections().markAllPresentAgentsKnown();
    }
    // The window is still in the middle of closing.
    m_onboardingWindow.release()->deleteLater();
    m_controller->trayStandIn().setWelcoming(false);
    if (m_settingsWindow) {
        m_settingsWindow->setAboveOthers(false);
    }
    if (m_updateWindow) {
        m_updateWindow->setAboveOthers(false);
    }
}

void AppDelegate::openSettings() {
    if (!m_settingsWindow) {
        m_settingsWindow = std::make_unique<SettingsWindow>(windowContext());
        m_settingsWindow->addActions(m_menu->keyedActions());
    }
    presentAskedFor(*m_settingsWindow);
}

/// The welcome is above all other windows, and must not cover what is asked for from there.
void AppDelegate::presentAskedFor(ManagedWindow &window) {
    window.setAboveOthers(m_onboardingWindow != nullptr);
    window.present();
}

void AppDelegate::checkForUpdates() {
    m_controller->updates().checkForUpdates();
    presentAskedFor(updateWindow());
}

UpdateWindow &AppDelegate::updateWindow() {
    if (!m_updateWindow) {
        m_updateWindow = std::make_unique<UpdateWindow>(m_controller->updates());
        m_updateWindow->addActions(m_menu->keyedActions());
    }
    return *m_updateWindow;
}

void AppDelegate::showPanel() {
    m_controller->presenterManager()->presentPanel();
}

} // namespace morvane

#include "moc_AppDelegate.cpp"
