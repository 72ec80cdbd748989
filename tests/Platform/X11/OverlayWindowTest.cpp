#include "Platform/X11/OverlayFixture.h"

#include <QScreen>

namespace morvane {
namespace {

class OverlayWindowTest : public OverlayFixture, public testing::WithParamInterface<WindowManager> {
protected:
    OverlayWindowTest() : OverlayFixture(GetParam()) {}
};

TEST_P(OverlayWindowTest, APersonComesBackToTheSameTerminalFromAnEmptyDesktop) {
    for (int times = 1; times <= 2; ++times) {
        display->goToDesktop(1);
        ASSERT_TRUE(becomesTrue([this] {
            return x11->property(x11->root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW).value(0) == 0;
        }));
        // A person stays long enough for the program to see it.
        becomesTrue([] { return true; });
        display->goToDesktop(0);
        EXPECT_TRUE(becomesTrue([&] { return activations.size() == times; }));
    }
    EXPECT_EQ(activations, QStringList({"XTerm", "XTerm"}));
}

TEST_P(OverlayWindowTest, StaysAboveOnEveryDesktopAndTakesNoFocus) {
    const auto other = openTerminal("other");
    ASSERT_TRUE(becomesTrue([this] { return display->focusedTitle() == "other"; }));
    EXPECT_TRUE(becomesTrue([this] { return isOnTop(); }));
    display->press("alt+Return");
    EXPECT_TRUE(becomesTrue([this] { return isOnTop(); }));
    // A window manager may take the focus away for a moment while it fills the screen; one that
    // we had taken would stay away.
    EXPECT_TRUE(becomesTrue([this] { return display->focusedTitle() == "other"; }));
    display->goToDesktop(1);
    EXPECT_TRUE(becomesTrue([this] { return display->focusedTitle() != "other" && isOnTop(); }));
}

TEST_P(OverlayWindowTest, GivesWayToAFullscreenProgramWhenToldTo) {
    overlay->setHidesOverFullscreen(true);
    EXPECT_TRUE(panel->isVisible());
    display->press("alt+Return");
    EXPECT_TRUE(becomesTrue([this] { return !panel->isVisible(); }));
    EXPECT_TRUE(overlay->isVisible());
    EXPECT_FALSE(overlay->takeKeyboard());
    overlay->setHidesOverFullscreen(false);
    EXPECT_TRUE(panel->isVisible());
    overlay->setHidesOverFullscreen(true);
    EXPECT_FALSE(panel->isVisible());

    display->goToDesktop(1);
    EXPECT_TRUE(becomesTrue([this] { return panel->isVisible(); }));
    display->goToDesktop(0);
    EXPECT_TRUE(becomesTrue([this] { return !panel->isVisible(); }));
    ASSERT_TRUE(becomesTrue([this] { return terminalHasKeyboard(); }));
    display->press("alt+Return");
    EXPECT_TRUE(becomesTrue([this] { return panel->isVisible(); }));
    display->press("alt+Return");
    EXPECT_TRUE(becomesTrue([this] { return !panel->isVisible(); }));
    terminal.reset();
    EXPECT_TRUE(becomesTrue([this] { return panel->isVisible(); }));
}

INSTANTIATE_TEST_SUITE_P(Under, OverlayWindowTest, testing::ValuesIn(WindowManager::all),
                         [](const auto &info) { return info.param.name; });

using OverlayTest = OverlayFixture;

TEST_F(OverlayTest, WithoutACompositorItsCornersAreCutOff) {
    EXPECT_FALSE(overlay->isTranslucent());
    EXPECT_TRUE(becomesTrue([] {
        const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
        const QRgb terminal = screen.pixel(overlayFrame.topLeft() - QPoint(5, -5));
        return screen.pixel(overlayFrame.topLeft()) == terminal &&
               screen.pixel(overlayFrame.bottomRight()) == terminal &&
               screen.pixel(overlayFrame.center()) != terminal;
    }));
}

class OverlayOnMonitorsTest : public OverlayFixture {
protected:
    OverlayOnMonitorsTest() : OverlayFixture(WindowManager::metacity) {}
};

TEST_F(OverlayOnMonitorsTest, AFullscreenProgramOnAnotherMonitorHidesNothing) {
    overlay->setHidesOverFullscreen(true);
    display->setMonitor("LEFT", {0, 0, 640, 800});
    display->setMonitor("RIGHT", {640, 0, 640, 800});
    ASSERT_TRUE(becomesTrue([] { return QGuiApplication::screens().size() == 2; }));
    display->movePointer({900, 700});
    const auto film = openTerminal("film", {"-fullscreen", "-geometry", "+700+100"});
    overlay->setGeometry({800, 0, 300, 100}, OverlayWindow::Anchor::topCenter);
    EXPECT_TRUE(becomesTrue([this] { return !panel->isVisible(); }));
    overlay->setGeometry({100, 0, 300, 100}, OverlayWindow::Anchor::topCenter);
    EXPECT_TRUE(becomesTrue([this] { return panel->isVisible(); }));

    // The film goes on while the person works on the other monitor.
    overlay->setGeometry({800, 0, 300, 100}, OverlayWindow::Anchor::topCenter);
    display->movePointer({300, 700});
    EXPECT_TRUE(display->withWindow(terminalTitle, {"windowmove", "0", "0", "windowactivate"}));
    ASSERT_TRUE(becomesTrue([this] { return terminalHasKeyboard(); }));
    EXPECT_FALSE(panel->isVisible());
}
} // namespace
} // namespace morvane
