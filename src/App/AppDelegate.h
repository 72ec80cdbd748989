#pragma once

#include "Platform/HotKeys.h"
#include "Presentation/Windows/OnboardingWindow.h"
#include "Presentation/Windows/SettingsWindow.h"
#include "Presentation/Windows/UpdateWindow.h"

#include <QObject>

#include <memory>

namespace morvane {

class AppController;
class StatusItem;
class StatusMenu;
struct PlatformServices;

/// What belongs to the process rather than to a session: it makes the controller, the status item
/// with its menu, and the windows, and responds to a second launch. Without a screen it makes only
/// the controller. Owned by `launch`; main thread.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    AppDelegate(MorvaneSettings &settings, const PlatformServices &platform);
    ~AppDelegate() override;

    /// Called once, when the main loop is about to run.
    void applicationDidFinishLaunching();

    /// The program was started again while it ran: the person is looking for it.
    void applicationShouldHandleReopen();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// The program is to end, and the version that was installed over it to start instead.
    void restartRequested();

private:
    void offerNewAgents();
    void makeMenu();
    void showPanelKey();
    HotKeys::State panelKeyState() const;
    void watchForNewVersion();
    void makeStatusItem();
    void showFirstRunIfNeeded();
    WindowContext windowContext();
    void showOnboarding(const OnboardingView::Mode &mode);
    void finishOnboarding(const OnboardingView::Mode &mode);
    void openSettings();
    void presentAskedFor(ManagedWindow &window);
    void checkForUpdates();
    UpdateWindow &updateWindow();
    void showPanel();

    MorvaneSettings &m_settings;
    const PlatformServices &m_platform;
    std::unique_ptr<AppController> m_controller;
    std::unique_ptr<StatusMenu> m_menu;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<SettingsWindow> m_settingsWindow;     ///< made when first asked for, then kept
    std::unique_ptr<UpdateWindow> m_updateWindow;         ///< the same
    std::unique_ptr<OnboardingWindow> m_onboardingWindow; ///< set only while it is shown
};

} // namespace morvane
