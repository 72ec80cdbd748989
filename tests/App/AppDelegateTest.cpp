#include "App/WindowsFixture.h"

#include <QCloseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

namespace morvane {
namespace {

class AppDelegateTest : public WindowsFixture {
protected:
    static void close(const char *title) {
        windowTitled(title)->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(AppDelegateTest, WelcomesOnceWhateverBecomesOfTheWelcome) {
    home.write(".claude/settings.json", "{}");
    delegate.applicationDidFinishLaunching();
    const QWidget *welcome = windowTitled("Welcome to Morvane");
    ASSERT_NE(welcome, nullptr);
    EXPECT_TRUE(welcome->isVisible());
    EXPECT_FALSE(welcome->windowHandle()->property("_q_showWithoutActivating").toBool());
    // This counts even for a person who quits now.
    EXPECT_TRUE(isStored("hasCompletedFirstRun"));
    scheduler.advance(Seconds(4000));
    EXPECT_FALSE(settings.knownAgents());

    statusItemHost().setPresent(true);
    // The settings are above the welcome while that is open, and an ordinary window afterwards.
    delegate.applicationShouldHandleReopen();
    const QWidget *asked = windowTitled("Morvane Settings");
    EXPECT_TRUE(asked->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    // If it were shown again, it would take the keyboard, and move to the current desktop.
    const QSignalSpy reappearances(asked->windowHandle(), &QWindow::visibleChanged);
    // A window manager may ask twice before the window is gone.
    send(*windowTitled("Welcome to Morvane")->windowHandle(), QCloseEvent());
    close("Welcome to Morvane");
    EXPECT_FALSE(asked->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(asked->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(reappearances.size(), 0);
    EXPECT_EQ(settings.knownAgents(), QStringList{"claude"});
    EXPECT_EQ(windowTitled("Welcome to Morvane"), nullptr);
    EXPECT_FALSE(isOverlayShown());
}

TEST_F(AppDelegateTest, OffersNewAgentsButNotOverAnOffer) {
    constexpr const char *title = "New agent detected";
    settings.setHasCompletedFirstRun(true);
    settings.setKnownAgents(QStringList());
    delegate.applicationDidFinishLaunching();

    home.write(".claude/settings.json", "{}");
    home.write(".gemini/settings.json", "{}");
    scheduler.advance(Seconds(1801));
    // Nobody has asked for this window, so it doesn't take the keyboard.
    window = windowTitled(title);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->windowHandle()->property("_q_showWithoutActivating").toBool());
    EXPECT_TRUE(reads("Claude Code and Gemini CLI have been installed since"));
    // If the desktop focuses every new window, a key still presses nothing in this one.
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    for (const int key : {Qt::Key_Space, Qt::Key_Escape}) {
        QTest::keyClick(window->windowHandle(), static_cast<Qt::Key>(key));
    }
    EXPECT_TRUE(window->isVisible());
    EXPECT_NE(button("Connect Claude Code"), nullptr);
    EXPECT_EQ(AccessibleControls(*window).faults(), QStringList());
    home.write(".codex/config.toml");
    scheduler.advance(Seconds(1801));
    EXPECT_EQ(windowTitled(title), window);
    close(title);
    scheduler.advance(Seconds(1801));
    EXPECT_EQ(windowTitled(title), nullptr);
}

TEST_F(AppDelegateTest, ShowsItsSettingsWhenStartedAgainAndThePanelWhereNoIconLeadsToIt) {
    constexpr const char *title = "Morvane Settings";
    settings.setHasCompletedFirstRun(true);
    delegate.applicationDidFinishLaunching();
    statusItemHost().setPresent(true);
    delegate.applicationShouldHandleReopen();
    ASSERT_NE(windowTitled(title), nullptr);
    EXPECT_FALSE(isOverlayShown());

    windowTitled(title)->resize(700, 500);
    close(title);
    settings.setShowMenuBarIcon(false);
    delegate.applicationShouldHandleReopen();
    EXPECT_TRUE(windowTitled(title)->isVisible());
    EXPECT_EQ(windowTitled(title)->size(), QSize(700, 500));
    EXPECT_TRUE(isOverlayShown());
    EXPECT_GE(overlay().geometry.width(), 520);
    // The panel may cover the very button that the person wants, so a click closes it.
    QTest::mouseClick(windowTitled(title)->windowHandle(), Qt::LeftButton);
    scheduler.advance(Seconds(1));
    EXPECT_LT(overlay().geometry.width(), 520);
}

TEST_F(AppDelegateTest, StartsWithoutAScreen) {
    platform.hasScreen = false;
    platform.displays = std::make_unique<NoScreen::NullDisplays>();
    delegate.applicationDidFinishLaunching();
    delegate.applicationShouldHandleReopen();
    EXPECT_EQ(windowTitled("Welcome to Morvane"), nullptr);
    // The welcome is still to come, once there is a screen.
    EXPECT_FALSE(settings.hasCompletedFirstRun());
}

} // namespace
} // namespace morvane
