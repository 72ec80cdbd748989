#include "Platform/X11/OverlayFixture.h"

#include <QMenu>

namespace morvane {
namespace {

constexpr std::uint8_t heldKey = 76; ///< F10, which types nothing

class OverlayKeyboardTest : public OverlayFixture,
                            public testing::WithParamInterface<WindowManager> {
protected:
    OverlayKeyboardTest() : OverlayFixture(GetParam()) {}
};

TEST_P(OverlayKeyboardTest, TakesTheKeyboardForAFieldPassesItOnAndGivesItBack) {
    ASSERT_TRUE(takeKeyboard());
    type("Name");
    EXPECT_TRUE(becomesTrue([this] { return field->text() == "Name"; }));
    // The field's own menu is another window, and a click on it no click elsewhere.
    display->click(field->mapToGlobal(field->rect().center()), 3);
    ASSERT_TRUE(becomesTrue([] { return QApplication::activePopupWidget() != nullptr; }));
    auto &menu = *qobject_cast<QMenu *>(QApplication::activePopupWidget());
    const QRect selectAll = menu.actionGeometry(menu.actions().last());
    display->click(menu.mapToGlobal(selectAll.center()));
    ASSERT_TRUE(becomesTrue([this] { return field->hasSelectedText(); }));
    type("Name");
    EXPECT_TRUE(becomesTrue([this] { return field->text() == "Name"; }));
    EXPECT_EQ(received(), "");
    overlay->releaseKeyboard();
    EXPECT_TRUE(becomesTrue([this] { return !field->hasFocus() && terminalHasKeyboard(); }));
    type("back");
    EXPECT_TRUE(becomesTrue([this] { return received() == "back"; }));
    EXPECT_EQ(field->text(), "Name");

    // Passed on, it goes back to whoever had it before both.
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

TEST_P(OverlayKeyboardTest, LeavesTheKeyboardWhereThePersonHasPutItInTheMeantime) {
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

TEST_P(OverlayKeyboardTest, KeepsTheKeyboardWhileAKeyIsHeldThatAnotherProgramHas) {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> other(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    const auto grab = xcb_grab_key_checked(other.get(), 0, x11->root(), 0, heldKey,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_EQ(xcb_request_check(other.get(), grab), nullptr);
    const auto hold = [&] {
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
    type("Name");
    EXPECT_TRUE(becomesTrue([this] { return field->text() == "Name"; }));

    // It may also be a key that takes it away.
    EXPECT_TRUE(hold());
    EXPECT_TRUE(display->withWindow(terminalTitle, {"windowfocus"}));
    EXPECT_TRUE(becomesTrue([this] { return !field->hasFocus(); }));
    letGo();
    EXPECT_TRUE(terminalHasKeyboard());
}

INSTANTIATE_TEST_SUITE_P(Under, OverlayKeyboardTest, testing::ValuesIn(WindowManager::all),
                         [](const auto &info) { return info.param.name; });

using InputMethodTest = OverlayFixture;

TEST_F(InputMethodTest, CoversNoCandidatesOfAnInputMethodWhileSomebodyTypes) {
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
    // With the keyboard on no field there are none.
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
