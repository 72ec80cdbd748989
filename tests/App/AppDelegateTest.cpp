#include "App/AppDelegate.h"

#include "App/AppFixture.h"

#include <QApplication>
#include <QCloseEvent>
#include <QWindow>
#include <gtest/gtest.h>

namespace morvane {
namespace {

class AppDelegateTest : public AppFixture {
protected:
    AppDelegateTest() { addFakeScreen(platform); }

    /// What a person sees of ordinary windows.
    static QStringList titles() {
        QStringList result;
        for (const QWidget *widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<const ManagedWindow *>(widget) && widget->isVisible()) {
                result.append(widget->windowTitle());
            }
        }
        result.sort();
        return result;
    }

    static QWidget *window(const char *title) {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->windowTitle() == QLatin1String(title)) {
                return widget;
            }
        }
        return nullptr;
    }

    static void close(const char *title) {
        window(title)->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    bool isPanelOpen() {
        scheduler.advance(Seconds(2));
        const auto &overlays = static_cast<FakeOverlayWindows &>(*platform.overlays).alive;
        return !overlays.isEmpty() && overlays.first()->isVisible();
    }

    FakeStatusItemHost &host() {
        return static_cast<FakeStatusItemHost &>(*platform.statusItemHost);
    }
    AppDelegate delegate{settings, platform};
};

TEST_F(AppDelegateTest, WelcomesOnceWhateverBecomesOfTheWelcome) {
    home.write(".claude/settings.json", "{}");
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(titles(), QStringList{"Welcome to Morvane"});
    EXPECT_EQ(window("Welcome to Morvane")->size(), QSize(540, 540));
    // Also for whoever quits now.
    EXPECT_TRUE(isStored("hasCompletedFirstRun"));
    scheduler.advance(Seconds(4000));
    EXPECT_FALSE(settings.knownAgents());

    host().setPresent(true);
    // Above the welcome while that is there, and an ordinary window from then on.
    delegate.applicationShouldHandleReopen();
    const QWidget *asked = window("Morvane Settings");
    EXPECT_TRUE(asked->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    // A window manager may ask twice before the window is gone.
    QCloseEvent request;
    QCoreApplication::sendEvent(window("Welcome to Morvane")->windowHandle(), &request);
    close("Welcome to Morvane");
    EXPECT_TRUE(asked->isVisible());
    EXPECT_FALSE(asked->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(settings.knownAgents(), QStringList{"claude"});
    EXPECT_EQ(window("Welcome to Morvane"), nullptr);
    EXPECT_FALSE(isPanelOpen());
}

TEST_F(AppDelegateTest, OffersNewAgentsButNotOverAnOffer) {
    constexpr const char *title = "New agent detected";
    settings.setHasCompletedFirstRun(true);
    settings.setKnownAgents(QStringList());
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(titles().isEmpty());

    home.write(".claude/settings.json", "{}");
    scheduler.advance(Seconds(1801));
    EXPECT_EQ(titles(), QStringList{title});
    home.write(".codex/config.toml");
    scheduler.advance(Seconds(1801));
    EXPECT_EQ(titles(), QStringList{title});
    close(title);
    scheduler.advance(Seconds(1801));
    EXPECT_TRUE(titles().isEmpty());

    home.write(".gemini/settings.json", "{}");
    scheduler.advance(Seconds(1801));
    EXPECT_EQ(titles(), QStringList{title});
}

TEST_F(AppDelegateTest, ShowsItsSettingsWhenStartedAgainAndThePanelWhereNoIconLeadsToIt) {
    constexpr const char *title = "Morvane Settings";
    settings.setHasCompletedFirstRun(true);
    delegate.applicationDidFinishLaunching();
    host().setPresent(true);
    delegate.applicationShouldHandleReopen();
    EXPECT_EQ(titles(), QStringList{title});
    EXPECT_FALSE(isPanelOpen());

    window(title)->resize(700, 500);
    close(title);
    settings.setShowMenuBarIcon(false);
    delegate.applicationShouldHandleReopen();
    EXPECT_EQ(titles(), QStringList{title});
    EXPECT_EQ(window(title)->size(), QSize(700, 500));
    EXPECT_TRUE(isPanelOpen());
}

TEST_F(AppDelegateTest, StartsWithoutAScreen) {
    platform.hasScreen = false;
    platform.displays = std::make_unique<NoScreen::NullDisplays>();
    delegate.applicationDidFinishLaunching();
    delegate.applicationShouldHandleReopen();
    EXPECT_TRUE(titles().isEmpty());
    // There is a welcome to come, when there is a screen.
    EXPECT_FALSE(settings.hasCompletedFirstRun());
}

} // namespace
} // namespace morvane
