#include "Platform/Linux/X11/ScreenDisplays.h"

#include "Platform/X11/OnX11.h"

#include <QApplication>
#include <QWidget>
#include <xcb/xcb.h>

namespace morvane {
namespace {

class ScreenDisplaysTest : public OnX11<QApplication> {
protected:
    static bool becomesFree(const ScreenDisplays &displays, qsizetype index, const QRect &frame) {
        return becomesTrue([&] { return displays.displays().value(index).visibleFrame == frame; });
    }

    void setNumbers(WId window, const char *property, const QList<std::uint32_t> &items) const {
        // The property goes over another connection, and must not arrive before the window exists.
        QGuiApplication::sync();
        xcb_change_property(x11->connection(), XCB_PROP_MODE_REPLACE,
                            static_cast<std::uint32_t>(window), x11->atom(property),
                            XCB_ATOM_CARDINAL, 32, static_cast<std::uint32_t>(items.size()),
                            items.data());
        xcb_flush(x11->connection());
    }
};

TEST_F(ScreenDisplaysTest, MonitorsComeAndGoAndABarTakesFromTheWorkAreaOfItsOwn) {
    const ScreenDisplays displays(*x11);
    EXPECT_EQ(displays.displays().size(), 1);
    display->run({"xrandr", "--output", "screen", "--off"});
    EXPECT_TRUE(becomesTrue([&] { return displays.displays().isEmpty(); }));
    display->run({"xrandr", "--output", "screen", "--auto"});
    EXPECT_TRUE(becomesTrue([&] { return displays.displays().size() == 1; }));

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

TEST_F(ScreenDisplaysTest, ABarThatNobodyManagesCountsWhileItCanBeSeen) {
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

TEST_F(ScreenDisplaysTest, TheAreaThatTheWindowManagerTellsCountsWhereItCanOnlyBeOfOneDisplay) {
    const ScreenDisplays displays(*x11);
    // The second desktop has another work area.
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
} // namespace
} // namespace morvane
