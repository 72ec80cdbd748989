#include "App/WindowsFixture.h"

#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

namespace morvane {
namespace {

using WelcomeTest = WindowsFixture;

TEST_F(WelcomeTest, OffersANewcomerNoKeyThatDoesNothing) {
    hotKeys.desktopGivesThem = true;
    hotKeys.setUsual(HotKeys::State::unavailable);
    open("Welcome to Morvane");
    window->findChild<OnboardingView *>()->go(2);
    scheduler.advance(Seconds(1));
    EXPECT_TRUE(reads("Hover the capsule to open the panel."));
    EXPECT_FALSE(reads("Ctrl+1–Ctrl+5"));
    // The person answers the desktop's question only now.
    hotKeys.setUsual(HotKeys::State::works);
    EXPECT_TRUE(reads("or press the key that the desktop has for it, to open the panel."));
}

TEST_F(WelcomeTest, WalksANewcomerThroughNamedControlsToAConnectedAgent) {
    home.write(".claude/settings.json", "{}");
    open("Welcome to Morvane");
    const auto *view = window->findChild<OnboardingView *>();
    EXPECT_EQ(AccessibleControls(*window).faults(), QStringList());
    EXPECT_EQ(button("Back"), nullptr);

    // A key that is released in another window does nothing in this one.
    send(*window->findChild<OnboardingView *>(),
         QKeyEvent(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier));
    send(*window, QEvent(QEvent::WindowDeactivate));
    QTest::keyRelease(window->findChild<OnboardingView *>(), Qt::Key_Return);
    // A held key goes on only when it is released.
    for (const auto type : {QEvent::KeyPress, QEvent::KeyPress, QEvent::KeyRelease}) {
        EXPECT_EQ(view->step(), 0);
        send(*button("Continue →"), QKeyEvent(type, Qt::Key_Return, Qt::NoModifier));
    }
    scheduler.advance(Seconds(1));
    EXPECT_EQ(AccessibleControls(*window).faults(), QStringList());
    // Codex is installed while the window is inactive.
    home.write(".codex/config.toml");
    comeBack();
    QCoreApplication::processEvents();
    ASSERT_NE(button("Connect Codex"), nullptr);
    button("Connect Claude Code")->click();
    EXPECT_TRUE(reads("A hook entry goes into each agent's settings file"));
    EXPECT_EQ(view->step(), 1);
    EXPECT_EQ(tabOrder(),
              (QStringList{"Disconnect Claude Code", "Connect Codex", "Back", "Continue →"}));
    // The capsule that the welcome speaks of stays in sight.
    EXPECT_TRUE(isOverlayShown());

    button("Continue →")->click();
    // While the page is still on its way the next press counts too.
    button("Back")->click();
    EXPECT_EQ(view->step(), 1);
    button("Continue →")->click();
    scheduler.advance(Seconds(1));
    EXPECT_EQ(AccessibleControls(*window).faults(), QStringList());
    EXPECT_TRUE(reads("Hover the capsule, or press"));
    // The desktop says that it has a tray when the welcome has long been there.
    statusItemHost().setPresent(true);
    EXPECT_TRUE(reads("Click the alien in the tray, or press"));
    static_cast<FakeLoginItem &>(*platform.loginItem).outcome = Failure{"the disk is full"};
    shownControl<QAbstractButton>(*window, "Launch at login")->click();
    EXPECT_TRUE(reads("Launch-at-login change failed: the disk is full"));
    button("Done")->click();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(isOverlayShown());
}

TEST_F(WelcomeTest, ScrollsWhereThereIsTooLittleRoomAndKeepsItsButtonInSight) {
    open("Welcome to Morvane");
    window->findChild<OnboardingView *>()->go(2);
    scheduler.advance(Seconds(1));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    window->setMinimumSize(1, 1);
    window->resize(540, 260);
    QCoreApplication::processEvents();
    const auto isInSight = [](const QWidget *control) {
        return control->visibleRegion() == QRegion(control->rect());
    };
    auto *last = shownControl<QAbstractButton>(*window, "Launch at login");
    EXPECT_FALSE(isInSight(last));
    EXPECT_TRUE(isInSight(button("Done")));
    QTest::keyClick(button("Done"), Qt::Key_Tab);
    EXPECT_TRUE(last->hasFocus());
    EXPECT_TRUE(isInSight(last));

    QTest::keyClick(last, Qt::Key_PageUp);
    EXPECT_FALSE(isInSight(last));
    QTest::keyClick(button("Done"), Qt::Key_PageDown);
    EXPECT_TRUE(isInSight(last));

    // The page doesn't scroll under a press, nor when the window gets the focus back.
    button("Done")->setFocus();
    auto *view = qobject_cast<QScrollArea *>(last->parentWidget()->parentWidget()->parentWidget());
    view->verticalScrollBar()->setValue(last->geometry().center().y() - view->viewport()->height());
    const bool wasChecked = last->isChecked();
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                      last->mapTo(window, QPoint(20, 3)));
    EXPECT_NE(last->isChecked(), wasChecked);
    emit qApp->focusChanged(nullptr, last);
    EXPECT_FALSE(isInSight(last));
}

TEST_F(WelcomeTest, AWindowIsNoLargerThanThereIsRoomFor) {
    ManagedWindow large("Too large");
    large.setFixedSize(5000, 5000);
    large.present();
    const QRect room = large.screen()->availableGeometry();
    EXPECT_EQ(large.pos(), room.topLeft());
    EXPECT_EQ(large.size(), room.size() - QSize(0, 40)); // for its title bar
    // A window of a fixed size is shown whole where it fits.
    ManagedWindow fixed("Fixed");
    ManagedWindow resizable("Resizable");
    const QSize nearlyAll = room.size() - QSize(0, 50);
    fixed.setFixedSize(nearlyAll);
    resizable.resize(nearlyAll);
    fixed.present();
    resizable.present();
    EXPECT_EQ(fixed.size(), nearlyAll);
    EXPECT_LT(resizable.height(), nearlyAll.height());
}

} // namespace
} // namespace morvane
