#include "Platform/Linux/Desktop/DesktopHostWindows.h"
#include "Platform/Linux/EventLoopScheduler.h"
#include "Platform/Linux/X11/X11WindowSystem.h"
#include "Platform/X11/OnX11.h"
#include "Support/ManualPool.h"

#include <QGuiApplication>
#include <QStandardPaths>
#include <QWindow>

namespace morvane {
namespace {

using Windows = std::optional<QList<HostWindow>>;

Windows foundBy(HostWindows &windows, const QString &bundleID) {
    return toldBy<Windows>([&](const auto &told) { windows.find(bundleID, told); })
        .value_or(Windows());
}

/// Two terminals of one application on the first desktop, the second of them in front.
class HostWindowsTest : public OnX11<QGuiApplication> {
protected:
    using OnX11::OnX11;

    void startAll() override {
        ASSERT_NO_FATAL_FAILURE(startApplication());
        scheduler = std::make_unique<EventLoopScheduler>();
        windows = std::make_unique<DesktopHostWindows>(
            std::make_unique<X11WindowSystem>(*x11, *scheduler),
            QDBusConnection(QStringLiteral("none")), pool, *scheduler);
        for (const char *title : {"shop", "shop-api"}) {
            terminals.push_back(
                start({"xterm", "-title", title, "-e", "sh", "-c",
                       "tty >\"$0\".new; mv \"$0\".new \"$0\"; sleep 600", home.path(title)}));
            ASSERT_TRUE(becomesTrue([&] { return QFile::exists(home.path(title)); }));
            ASSERT_TRUE(display->bringToFront(title));
        }
    }

    using Showing = HostWindows::Showing;

    Showing show(const QString &tty, Date knownAt = Date::clock::now()) {
        const auto result = toldBy<Showing>([&](const auto &told) {
            windows->showTerminal({tty, knownAt}, told);
            pool.runAll();
        });
        return result.value_or(Showing::unknown);
    }

    bool isInFront(const char *title) const {
        return becomesTrue([&] { return display->focusedTitle() == title; });
    }

    std::unique_ptr<EventLoopScheduler> scheduler;
    ManualPool pool;
    std::unique_ptr<DesktopHostWindows> windows;
    std::vector<std::unique_ptr<ChildProcess>> terminals;
};

/// On each window manager that is installed.
class ManagedHostWindowsTest : public HostWindowsTest,
                               public testing::WithParamInterface<WindowManager> {
protected:
    ManagedHostWindowsTest() : HostWindowsTest(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Under, ManagedHostWindowsTest, testing::ValuesIn(WindowManager::all),
                         [](const auto &info) { return info.param.name; });

TEST_P(ManagedHostWindowsTest, TheWindowThatIsMeantComesForwardFromWhereverItIs) {
    EXPECT_TRUE(windows->canFocusWindows());
    const auto found = foundBy(*windows, "xterm").value_or(QList<HostWindow>());
    ASSERT_EQ(found.size(), 2);
    const auto none = foundBy(*windows, "io.alacritty");
    EXPECT_TRUE(none && none->isEmpty());
    const bool isFirst = found[0].title == "shop";
    const HostWindow shop = found[isFirst ? 0 : 1];
    EXPECT_EQ(found[isFirst ? 1 : 0].title, "shop-api");

    // An overlay gives the keyboard back in this way, and the window manager doesn't hear of it.
    display->run({"xdotool", "windowfocus", found[isFirst ? 1 : 0].id});
    windows->activate(shop);
    EXPECT_TRUE(isInFront("shop"));
    // By itself the window manager would go back to shop-api, which had the keyboard last.
    ASSERT_TRUE(display->bringToFront("shop-api"));
    display->goToDesktop(1);
    ASSERT_TRUE(becomesTrue([this] { return display->focusedTitle() != "shop-api"; }));
    windows->activate(shop);
    EXPECT_TRUE(isInFront("shop"));
    if (QLatin1String(manager.name) != QLatin1String("i3")) { // which has no minimised windows
        display->run({"xdotool", "windowminimize", shop.id});
        ASSERT_TRUE(becomesTrue([this] { return display->focusedTitle() != "shop"; }));
        windows->activate(shop);
        EXPECT_TRUE(isInFront("shop"));
    }
}

TEST_P(ManagedHostWindowsTest, TheTerminalWithTheShellComesForward) {
    for (const char *title : {"shop", "shop-api", "shop"}) {
        display->goToDesktop(1);
        ASSERT_TRUE(becomesTrue([this] { return !display->focusedTitle().startsWith("shop"); }));
        EXPECT_EQ(show(QString::fromUtf8(home.read(title).trimmed())), Showing::shown);
        EXPECT_TRUE(isInFront(title));
    }
}

TEST_F(HostWindowsTest, ATerminalThatHasNoWindowOfItsOwnIsNotShown) {
    EXPECT_EQ(show(QString::fromUtf8(home.read("shop").trimmed()), Date()), Showing::unknown);
    for (const char *nobodys : {"/dev/null", "/dev/pts/99999", "/dev/../tmp", "", "\n"}) {
        EXPECT_EQ(show(nobodys), Showing::unknown) << nobodys;
    }
    // The terminal of a login over the network.
    const QString sshd = home.path("sshd-session");
    QFile::copy(QStandardPaths::findExecutable("script"), sshd);
    const auto login =
        start({sshd, "-qfc", "tty >" + home.path("login") + "; sleep 600", "/dev/null"});
    ASSERT_TRUE(becomesTrue([&] { return home.read("login").endsWith('\n'); }));
    const QString tty = QString::fromUtf8(home.read("login").trimmed());
    EXPECT_EQ(show(tty), Showing::elsewhere);

    // The program that has started the terminal has two windows, as an editor may.
    QWindow first;
    QWindow second;
    first.show();
    second.show();
    EXPECT_TRUE(becomesTrue([&] { return show(tty) == Showing::amongSeveral; }));
    login->kill(); // by itself it gives its child two seconds to end
}

/// A display whose server passes for Xwayland by the name of its output.
class XwaylandTest : public OnX11<QGuiApplication> {
protected:
    void startAll() override {
        display->setMonitor("XWAYLAND0", {0, 0, 1280, 800});
        ASSERT_NO_FATAL_FAILURE(startApplication());
    }
};

TEST_F(XwaylandTest, ItsWindowManagerHasNothingToDoWithMostWindows) {
    EventLoopScheduler scheduler;
    ASSERT_TRUE(x11->isXwayland());
    ManualPool pool;
    DesktopHostWindows windows(std::make_unique<X11WindowSystem>(*x11, scheduler),
                               QDBusConnection(QStringLiteral("none")), pool, scheduler);
    EXPECT_FALSE(windows.canFocusWindows());
    EXPECT_FALSE(foundBy(windows, "io.alacritty"));
}

} // namespace
} // namespace morvane
