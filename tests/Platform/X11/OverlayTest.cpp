#include "Platform/X11/OverlayFixture.h"

#include <QMenu>
#include <QScreen>

namespace morvane {
namespace {

constexpr std::uint8_t heldKey = 76; ///< F10, which types nothing

/// On each window manager that is installed.
class ManagedOverlayTest : public OverlayFixture,
                           public testing::WithParamInterface<WindowManager> {
protected:
    ManagedOverlayTest() : OverlayFixture(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Under, ManagedOverlayTest, testing::ValuesIn(WindowManager::all),
                         [](const auto &info) { return info.param.name; });

TEST_P(ManagedOverlayTest, APersonComesBackToTheSameTerminalFromAnEmptyDesktop) {
    const auto isEmpty = [this] {
        return x11->property(x11->root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW).value(0) == 0;
    };
    ASSERT_TRUE(becomesTrue([&] { return !isEmpty(); }));
    // A person stays long enough for the program to see it. The program is told of the change
    // before this slot.
    bool isSeen = false;
    QObject::connect(x11.get(), &X11Connection::rootPropertyChanged, active.get(),
                     [&] { isSeen = isEmpty(); });
    for (int times = 1; times <= 2; ++times) {
        display->goToDesktop(1);
        ASSERT_TRUE(becomesTrue([&] { return isSeen; }));
        display->goToDesktop(0);
        EXPECT_TRUE(becomesTrue([&] { return activations.size() == times; }));
    }
    EXPECT_EQ(activations, QStringList({"XTerm", "XTerm"}));
}

TEST_P(ManagedOverlayTest, StaysAboveOnEveryDesktopAndTakesNoFocus) {
    const auto other = openTerminal("other");
    ASSERT_TRUE(becomesTrue([this] { return display->focusedTitle() == "other"; }));
    EXPECT_TRUE(becomesTrue([this] { return isOnTop(); }));
    X11FullscreenWindows films(*x11);
    films.follow();
    display->press("alt+Return");
    ASSERT_TRUE(becomesTrue([&] { return !films.areas().isEmpty(); }));
    EXPECT_TRUE(becomesTrue([this] { return isOnTop(); }));
    // A window manager may take the focus away for a moment while it fills the screen; a focus that
    // we had taken wouldn't come back.
    EXPECT_TRUE(becomesTrue([this] { return display->focusedTitle() == "other"; }));
    display->goToDesktop(1);
    EXPECT_TRUE(becomesTrue([this] { return display->focusedTitle() != "other" && isOnTop(); }));
}

TEST_P(ManagedOverlayTest, GivesWayToAFullscreenProgramWhenToldTo) {
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

TEST_P(ManagedOverlayTest, KeepsTheKeyboardForAFieldsMenuPassesItOnAndGivesItBack) {
    ASSERT_TRUE(takeKeyboard());
    field->setText("Old");
    // The field's own menu is another window, but a click on it doesn't count as one elsewhere.
    display->click(field->mapToGlobal(field->rect().center()), 3);
    ASSERT_TRUE(becomesTrue([] { return QApplication::activePopupWidget() != nullptr; }));
    auto &menu = *qobject_cast<QMenu *>(QApplication::activePopupWidget());
    const QRect selectAll = menu.actionGeometry(menu.actions().last());
    display->click(menu.mapToGlobal(selectAll.center()));
    ASSERT_TRUE(becomesTrue([this] { return field->hasSelectedText(); }));
    type("Name");
    EXPECT_TRUE(becomesTrue([this] { return field->text() == "Name"; }));
    EXPECT_EQ(received(), "");

    // When the overlay has passed the keyboard on, it goes back to whoever had it before both.
    QWidget second;
    const auto next = overlays->adopt(second);
    next->setGeometry({0, 700, 100, 50}, OverlayWindow::Anchor::topCenter);
    next->show();
    for (const bool isClicked : {false, true}) {
        ASSERT_TRUE(takeKeyboard());
        ASSERT_TRUE(becomesTrue([&] { return next->takeKeyboard() && next->holdsKeyboard(); }));
        overlay->releaseKeyboard();
        EXPECT_TRUE(next->holdsKeyboard());
        if (isClicked) {
            display->click({640, 500});
        } else {
            next->releaseKeyboard();
        }
        EXPECT_TRUE(becomesTrue([&] { return terminalHasKeyboard() && !next->holdsKeyboard(); }));
    }

    ASSERT_TRUE(takeKeyboard());
    overlay->hide();
    EXPECT_TRUE(becomesTrue([this] { return terminalHasKeyboard(); }));
    // The same terminal is at the front as before.
    EXPECT_EQ(activations, QStringList());
}

TEST_P(ManagedOverlayTest, LeavesTheKeyboardWhereThePersonHasPutItInTheMeantime) {
    ASSERT_TRUE(takeKeyboard());
    display->click({640, 500});
    EXPECT_TRUE(becomesTrue([this] { return !field->hasFocus() && terminalHasKeyboard(); }));

    ASSERT_TRUE(takeKeyboard());
    const auto other = openTerminal("other");
    ASSERT_TRUE(becomesTrue([this] { return QFile::exists(home.path("other")); }));
    EXPECT_TRUE(display->withWindow("other", {"windowactivate"}));
    EXPECT_TRUE(becomesTrue([this] { return display->focusedTitle() == "other"; }));
    EXPECT_TRUE(becomesTrue([this] { return !field->hasFocus(); }));
    overlay->releaseKeyboard();
    type("other");
    EXPECT_EQ(display->focusedTitle(), "other");
    EXPECT_EQ(field->text(), "");
}

TEST_P(ManagedOverlayTest, KeepsTheKeyboardWhileAKeyIsHeldThatAnotherProgramHas) {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> other(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    const auto grab = xcb_grab_key_checked(other.get(), 0, x11->root(), 0, heldKey,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_EQ(xcb_request_check(other.get(), grab), nullptr);
    const auto hold = [&] {
        while (const XcbReply<xcb_generic_event_t> old{xcb_poll_for_event(other.get())}) {
        }
        display->run({"xdotool", "keydown", QString::number(heldKey)});
        // Once it repeats, it is held for longer than Qt waits.
        return becomesTrue([&, presses = 0]() mutable {
            while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(other.get())}) {
                presses += event->response_type == XCB_KEY_PRESS ? 1 : 0;
            }
            return presses >= 2;
        });
    };
    const auto letGo = [&] { display->run({"xdotool", "keyup", QString::number(heldKey)}); };
    ASSERT_TRUE(takeKeyboard());
    EXPECT_TRUE(hold());
    EXPECT_TRUE(field->hasFocus());
    letGo();

    // Such a key may also take the keyboard away.
    EXPECT_TRUE(hold());
    EXPECT_TRUE(display->withWindow(terminalTitle, {"windowfocus"}));
    EXPECT_TRUE(becomesTrue([this] { return !field->hasFocus(); }));
    letGo();
    EXPECT_TRUE(terminalHasKeyboard());
}

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

TEST_F(OverlayTest, CoversNoCandidatesOfAnInputMethodWhileSomebodyTypes) {
    auto other = openTerminal("other");
    ASSERT_TRUE(becomesTrue([this] { return display->focusedTitle() == "other"; }));
    ASSERT_TRUE(takeKeyboard());
    QWidget candidates(nullptr, Qt::Tool | Qt::X11BypassWindowManagerHint);
    candidates.setAttribute(Qt::WA_ShowWithoutActivating);
    candidates.setGeometry(overlayFrame);
    candidates.show();
    ASSERT_TRUE(becomesTrue([this] { return !isOnTop(); }));
    bool isRestacked = false;
    QObject::connect(x11.get(), &X11Connection::rootPropertyChanged, [&](std::uint32_t atom) {
        isRestacked = isRestacked || atom == x11->atom("_NET_CLIENT_LIST_STACKING");
    });
    EXPECT_TRUE(display->withWindow(terminalTitle, {"windowraise"}));
    ASSERT_TRUE(becomesTrue([&] { return isRestacked; }));
    QGuiApplication::sync();
    EXPECT_FALSE(isOnTop());
    // Without a focused field there are no candidates.
    field->clearFocus();
    EXPECT_TRUE(display->withWindow("other", {"windowraise"}));
    EXPECT_TRUE(becomesTrue([this] { return isOnTop(); }));

    for (const bool isReleased : {true, false}) {
        ASSERT_TRUE(takeKeyboard());
        candidates.raise();
        ASSERT_TRUE(becomesTrue([this] { return !isOnTop(); }));
        if (isReleased) {
            overlay->releaseKeyboard();
        } else {
            EXPECT_TRUE(display->withWindow(terminalTitle, {"windowfocus"}));
        }
        EXPECT_TRUE(becomesTrue([this] { return isOnTop(); }));
    }
}

} // namespace
} // namespace morvane
