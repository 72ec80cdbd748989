#include "Platform/Linux/X11/ActiveWindow.h"
#include "Platform/Linux/X11/ScreenDisplays.h"
#include "Platform/Linux/X11/X11FullscreenWindows.h"
#include "Platform/Linux/X11/X11HeldKeys.h"
#include "Platform/Linux/X11/X11OverlayWindows.h"
#include "Platform/Linux/X11/XcbReply.h"
#include "Platform/X11/OnX11.h"
#include "Support/Printing.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QPainterPath>
#include <QScreen>
#include <QWindow>
#include <xcb/xcb.h>

namespace morvane {
namespace {

constexpr QRect overlayFrame(490, 0, 300, 100);
constexpr std::uint8_t heldKey = 76; ///< F10, which types nothing

/// An overlay with a text field on it, above a terminal that has the keyboard, under a window
/// manager.
class OverlayTest : public OnX11<QApplication> {
protected:
    explicit OverlayTest(const WindowManager &manager = WindowManager::openbox) : OnX11(manager) {}

    void startAll() override {
        ASSERT_NO_FATAL_FAILURE(startTerminal());
        ASSERT_NO_FATAL_FAILURE(startApplication());
        active = std::make_unique<ActiveWindow>(*x11);
        QObject::connect(active.get(), &ForegroundApplication::activated, application.get(),
                         [this](const QString &name) { activations.append(name); });
        overlays =
            std::make_unique<X11OverlayWindows>(*x11, std::make_unique<X11FullscreenWindows>(*x11));
        panel = std::make_unique<QWidget>();
        field = new QLineEdit(panel.get());
        field->setGeometry(20, 20, 200, 30);
        overlay = overlays->adopt(*panel);
        QPainterPath shape;
        shape.addRoundedRect(QRectF(QPointF(), overlayFrame.size()), 20, 20);
        overlay->setShape(shape);
        overlay->setGeometry(overlayFrame, OverlayWindow::Anchor::topCenter);
        overlay->show();
        ASSERT_TRUE(becomesTrue([this] { return isOnTop(); }));
    }

    void type(const char *text) const {
        const auto typing = display->type(QLatin1String(text));
        becomesTrue([&] { return !typing->isRunning(); });
    }

    /// Nothing that can be seen lies above the overlay.
    bool isOnTop() const {
        auto *connection = x11->connection();
        const XcbReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, x11->root()), nullptr));
        const auto *windows = xcb_query_tree_children(tree.get());
        for (int index = xcb_query_tree_children_length(tree.get()) - 1; index >= 0; --index) {
            const XcbReply<xcb_get_window_attributes_reply_t> attributes(
                xcb_get_window_attributes_reply(
                    connection, xcb_get_window_attributes(connection, windows[index]), nullptr));
            if (attributes && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
                attributes->map_state == XCB_MAP_STATE_VIEWABLE) {
                return windows[index] == panel->winId();
            }
        }
        return false;
    }

    /// Whether the field gets it.
    bool takeKeyboard() const {
        const bool isTaken = overlay->takeKeyboard();
        field->setFocus();
        return isTaken && becomesTrue([this] { return field->hasFocus(); });
    }

    static bool becomesFree(const ScreenDisplays &displays, qsizetype index, const QRect &frame) {
        return becomesTrue([&] { return displays.displays().value(index).visibleFrame == frame; });
    }

    void setNumbers(WId window, const char *property, const QList<std::uint32_t> &items) const {
        // This travels on another connection, and must not overtake the window.
        QGuiApplication::sync();
        xcb_change_property(x11->connection(), XCB_PROP_MODE_REPLACE,
                            static_cast<std::uint32_t>(window), x11->atom(property),
                            XCB_ATOM_CARDINAL, 32, static_cast<std::uint32_t>(items.size()),
                            items.data());
        xcb_flush(x11->connection());
    }

    QStringList activations; ///< the programs that were told to have come to the front
    std::unique_ptr<ActiveWindow> active;
    std::unique_ptr<X11OverlayWindows> overlays;
    std::unique_ptr<QWidget> panel;
    QLineEdit *field = nullptr;
    std::unique_ptr<OverlayWindow> overlay;
};

class OverlayWindowTest : public OverlayTest, public testing::WithParamInterface<WindowManager> {
protected:
    OverlayWindowTest() : OverlayTest(GetParam()) {}
};

TEST_P(OverlayWindowTest, TakesTheKeyboardForAFieldAndGivesItBack) {
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

    ASSERT_TRUE(takeKeyboard());
    overlay->hide();
    EXPECT_TRUE(becomesTrue([this] { return terminalHasKeyboard(); }));
    // The same terminal is at the front as before.
    EXPECT_EQ(activations, QStringList());
}

TEST_P(OverlayWindowTest, LeavesTheKeyboardWhereThePersonHasPutItInTheMeantime) {
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

TEST_P(OverlayWindowTest, KeepsTheKeyboardWhileAKeyIsHeldThatAnotherProgramHas) {
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

TEST_P(OverlayWindowTest, PassesTheKeyboardOnAndGivesItToWhoeverHadItBeforeBoth) {
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
    EXPECT_EQ(activations, QStringList());
}

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

/// Counts what the server tells of a key, and what the panel's window hears of it.
class HeldKeysTest : public OverlayTest, private QAbstractNativeEventFilter {
protected:
    void startAll() override {
        ASSERT_NO_FATAL_FAILURE(OverlayTest::startAll());
        heldKeys = std::make_unique<X11HeldKeys>();
        application->installNativeEventFilter(this);
        panel->windowHandle()->installEventFilter(&heard);
    }

    bool hold(const char *key) { return display->run({"xdotool", "keydown", key}); }
    bool letGo(const char *key) { return display->run({"xdotool", "keyup", key}); }

    /// Whether it goes on doing so, however long it is held.
    bool isTold() {
        told = 0;
        return becomesTrue([this] { return told >= 3; });
    }

    struct : QObject {
        bool eventFilter(QObject *, QEvent *event) override {
            presses += event->type() == QEvent::KeyPress ? 1 : 0;
            releases += event->type() == QEvent::KeyRelease ? 1 : 0;
            return false;
        }
        int presses = 0;
        int releases = 0;
    } heard;

private:
    bool nativeEventFilter(const QByteArray &, void *message, qintptr *) override {
        const auto &key = *static_cast<const xcb_key_press_event_t *>(message);
        told += key.response_type == XCB_KEY_PRESS ? 1 : 0;
        return false;
    }

    int told = 0;
    std::unique_ptr<X11HeldKeys> heldKeys;
};

TEST_F(HeldKeysTest, AKeyThatIsHeldIsLetGoOnce) {
    ASSERT_TRUE(takeKeyboard());
    hold("Return");
    EXPECT_TRUE(becomesTrue([this] { return heard.presses >= 3; }));
    EXPECT_EQ(heard.releases, 0);
    letGo("Return");
    EXPECT_TRUE(becomesTrue([this] { return heard.releases > 0; }));
    EXPECT_EQ(heard.releases, 1);
    hold("a");
    EXPECT_TRUE(becomesTrue([this] { return field->text().size() >= 4; }));
    letGo("a");
    hold("BackSpace");
    EXPECT_TRUE(becomesTrue([this] { return field->text().isEmpty(); }));
    letGo("BackSpace");
}

TEST_F(HeldKeysTest, AKeyThatWentDownInAnotherWindowBeginsNothing) {
    hold("Return");
    ASSERT_TRUE(becomesTrue([this] { return !received().isEmpty(); }));
    ASSERT_TRUE(takeKeyboard());
    EXPECT_TRUE(isTold());
    letGo("Return");
    EXPECT_EQ(heard.presses, 0);

    // A menu acts on the press.
    QMenu menu;
    const QAction *paste = menu.addAction("Paste");
    bool isChosen = false;
    QObject::connect(paste, &QAction::triggered, [&] { isChosen = true; });
    menu.popup(field->mapToGlobal(QPoint()));
    ASSERT_TRUE(becomesTrue([&] { return menu.isVisible(); }));
    display->press("Down");
    hold("Return");
    EXPECT_TRUE(becomesTrue([&] { return isChosen; }));
    EXPECT_TRUE(isTold());
    letGo("Return");
    EXPECT_EQ(heard.presses, 0);
    type("a");
    EXPECT_TRUE(becomesTrue([this] { return field->text() == "a"; }));
}

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

class OverlayOnMonitorsTest : public OverlayTest {
protected:
    OverlayOnMonitorsTest() : OverlayTest(WindowManager::metacity) {}
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

TEST_F(OverlayTest, ABarTakesFromTheWorkAreaOfItsOwnMonitorWhichMayComeAndGo) {
    const ScreenDisplays displays(*x11);
    display->setMonitor("LEFT", {0, 0, 640, 800});
    display->setMonitor("RIGHT", {640, 0, 640, 800});
    ASSERT_TRUE(becomesTrue([&] { return displays.displays().size() == 2; }));
    QWidget bar;
    setNumbers(bar.winId(), "_NET_WM_STRUT_PARTIAL", {0, 0, 40, 0, 0, 0, 0, 0, 640, 1279, 0, 0});
    bar.show();
    EXPECT_TRUE(becomesFree(displays, 1, {640, 40, 640, 760}));
    EXPECT_EQ(displays.displays().value(0).visibleFrame, QRect(0, 0, 640, 800));

    int changes = 0;
    QObject::connect(&displays, &Displays::changed, [&] { ++changes; });
    display->run({"xrandr", "--delmonitor", "RIGHT"});
    EXPECT_TRUE(becomesTrue([&] { return changes > 0 && displays.displays().size() == 1; }));
    changes = 0;
    display->setMonitor("RIGHT", {640, 200, 400, 600});
    EXPECT_TRUE(becomesTrue([&] {
        return changes > 0 && displays.displays().value(1).frame == QRect(640, 200, 400, 600);
    }));
}

TEST_F(OverlayTest, ABarThatNobodyManagesCountsWhileItCanBeSeen) {
    const ScreenDisplays displays(*x11);
    const QRect whole(0, 0, 1280, 800);
    QWidget frame(nullptr, Qt::X11BypassWindowManagerHint);
    QWidget bar(&frame);
    bar.setAttribute(Qt::WA_NativeWindow);
    const QList<std::uint32_t> strut{0, 0, 40, 0, 0, 0, 0, 0, 0, 1279, 0, 0};
    for (const QWidget *holder : {&frame, &bar}) {
        setNumbers(holder->winId(), "_NET_WM_STRUT_PARTIAL", strut);
        EXPECT_TRUE(becomesFree(displays, 0, whole));
        frame.show();
        EXPECT_TRUE(becomesFree(displays, 0, {0, 40, 1280, 760}));
        frame.hide();
        EXPECT_TRUE(becomesFree(displays, 0, whole));
        setNumbers(holder->winId(), "_NET_WM_STRUT_PARTIAL", {});
    }
}

TEST_F(OverlayTest, TheAreaThatTheWindowManagerTellsCountsWhereItCanOnlyBeOfOneDisplay) {
    const ScreenDisplays displays(*x11);
    // On the second desktop it is another.
    setNumbers(x11->root(), "_NET_WORKAREA", {0, 30, 1280, 770, 0, 60, 1280, 740});
    EXPECT_TRUE(becomesFree(displays, 0, {0, 30, 1280, 770}));
    display->goToDesktop(1);
    EXPECT_TRUE(becomesFree(displays, 0, {0, 60, 1280, 740}));
    setNumbers(x11->root(), "_NET_WORKAREA", {0, 0, 0, 0, 0, 0, 0, 0}); // useless
    EXPECT_TRUE(becomesFree(displays, 0, {0, 0, 1280, 800}));

    setNumbers(x11->root(), "_NET_WORKAREA", {0, 30, 1280, 770, 0, 60, 1280, 740});
    EXPECT_TRUE(becomesFree(displays, 0, {0, 60, 1280, 740}));
    display->setMonitor("LEFT", {0, 0, 640, 800});
    display->setMonitor("RIGHT", {640, 0, 640, 800});
    EXPECT_TRUE(becomesFree(displays, 1, {640, 0, 640, 800}));
    EXPECT_TRUE(becomesFree(displays, 0, {0, 0, 640, 800}));
}

TEST_F(OverlayTest, WithoutAnOutputThereIsNoDisplay) {
    const ScreenDisplays displays(*x11);
    EXPECT_EQ(displays.displays().size(), 1);
    display->run({"xrandr", "--output", "screen", "--off"});
    EXPECT_TRUE(becomesTrue([&] { return displays.displays().isEmpty(); }));
    display->run({"xrandr", "--output", "screen", "--auto"});
    EXPECT_TRUE(becomesTrue([&] { return displays.displays().size() == 1; }));
}

} // namespace
} // namespace morvane
