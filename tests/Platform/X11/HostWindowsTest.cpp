#include "Platform/Linux/Desktop/DesktopHostWindows.h"
#include "Platform/Linux/EventLoopScheduler.h"
#include "Platform/Linux/X11/X11WindowSystem.h"
#include "Platform/X11/OnX11.h"
#include "Support/ManualPool.h"

#include <QGuiApplication>

namespace morvane {
namespace {

/// Two terminals of one application on the first desktop, the second of them in front.
class HostWindowsTest : public OnX11<QGuiApplication>,
                        public testing::WithParamInterface<WindowManager> {
protected:
    HostWindowsTest() : OnX11(GetParam()) {}

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

    std::optional<RunningHost> find(const QString &bundleID) {
        QList<std::optional<RunningHost>> found;
        windows->find(bundleID, [&](const auto &host) { found.append(host); });
        EXPECT_TRUE(found.isEmpty());
        EXPECT_TRUE(becomesTrue([&] { return !found.isEmpty(); }));
        return found.value(0);
    }

    bool show(const QString &tty) {
        std::optional<bool> result;
        windows->showTerminal(tty, [&](bool isShown) { result = isShown; });
        pool.runAll();
        EXPECT_TRUE(becomesTrue([&] { return result.has_value(); }));
        return result == true;
    }

    bool isInFront(const char *title) const {
        return becomesTrue([&] { return display->focusedTitle() == title; });
    }

    std::unique_ptr<EventLoopScheduler> scheduler;
    ManualPool pool;
    std::unique_ptr<DesktopHostWindows> windows;
    std::vector<std::unique_ptr<ChildProcess>> terminals;
};

TEST_P(HostWindowsTest, TheWindowThatIsMeantComesForwardFromWhereverItIs) {
    const auto host = find("xterm");
    ASSERT_TRUE(host && host->windows.size() == 2);
    EXPECT_EQ(find("io.alacritty"), std::nullopt);
    const bool isFirst = host->windows[0].title == "shop";
    const HostWindow shop = host->windows[isFirst ? 0 : 1];
    EXPECT_EQ(host->windows[isFirst ? 1 : 0].title, "shop-api");

    // As an overlay does that gives the keyboard back: the window manager hears nothing of it.
    display->run({"xdotool", "windowfocus", host->windows[isFirst ? 1 : 0].id});
    windows->raise(shop);
    windows->activate(*host);
    EXPECT_TRUE(isInFront("shop"));
    // The window manager itself goes back to the one that had the keyboard last.
    ASSERT_TRUE(display->bringToFront("shop-api"));
    display->goToDesktop(1);
    ASSERT_TRUE(becomesTrue([this] { return display->focusedTitle() != "shop-api"; }));
    windows->raise(shop);
    windows->activate(*host);
    EXPECT_TRUE(isInFront("shop"));
    if (QLatin1String(manager.name) != QLatin1String("i3")) { // which has no minimised windows
        display->run({"xdotool", "windowminimize", shop.id});
        ASSERT_TRUE(becomesTrue([this] { return display->focusedTitle() != "shop"; }));
        windows->raise(shop);
        windows->activate(*host);
        EXPECT_TRUE(isInFront("shop"));
    }
}

TEST_P(HostWindowsTest, TheTerminalWithTheShellComesForward) {
    for (const char *title : {"shop", "shop-api", "shop"}) {
        display->goToDesktop(1);
        ASSERT_TRUE(becomesTrue([this] { return !display->focusedTitle().startsWith("shop"); }));
        EXPECT_TRUE(show(QString::fromUtf8(home.read(title).trimmed())));
        EXPECT_TRUE(isInFront(title));
    }
    for (const char *nobodys : {"/dev/null", "/dev/pts/99999", "/dev/../tmp", "", "\n"}) {
        EXPECT_FALSE(show(nobodys)) << nobodys;
    }
}

INSTANTIATE_TEST_SUITE_P(Under, HostWindowsTest, testing::ValuesIn(WindowManager::all),
                         [](const auto &info) { return info.param.name; });

} // namespace
} // namespace morvane
