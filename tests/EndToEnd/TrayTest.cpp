#include "EndToEnd/ProgramOnScreen.h"
#include "EndToEnd/TrayHost.h"
#include "Support/Printing.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <memory>

namespace morvane {
namespace {

/// The program on a desktop whose tray comes and goes.
class TrayTest : public ProgramOnScreen {
protected:
    void startAll() override {
        program = start({MORVANE});
        ASSERT_TRUE(home.waitForHook());
    }

    void openTray() {
        tray = std::make_unique<TrayHost>(
            display->environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")));
    }

    template <typename Condition>
    static bool becomesTrue(Condition condition) {
        return waitUntil([&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }

    bool hasItem() {
        return becomesTrue([this] { return !tray->items().isEmpty(); });
    }

    int count = 1;
    char name[5] = "test";
    char *arguments[2] = {name, nullptr};
    QCoreApplication application{count, arguments};
    std::unique_ptr<TrayHost> tray;
};

TEST_F(TrayTest, ComesBackWithATrayAndKeepsItsMenuTrueWhileThatIsOpen) {
    openTray();
    ASSERT_TRUE(hasItem());
    tray.reset();
    openTray();
    ASSERT_TRUE(hasItem());
    tray->openMenu();
    const QString menu = tray->menu().join(u'\n');
    EXPECT_EQ(menu.mid(menu.indexOf("Open")),
              "Open Morvane\nSettings… <Control+,>\nConnected agents — 1\n  [x] Claude Code\n"
              "Quit Morvane <Control+Q>");

    const int before = tray->menuChanges();
    tray->click("Claude Code");
    EXPECT_TRUE(becomesTrue([&] { return tray->menuChanges() > before; }));
    EXPECT_TRUE(becomesTrue([this] {
        return tray->menu().mid(3, 2) == QStringList{"Connected agents — none", "  Claude Code"};
    }));

    home.write(".codex/config.toml", "");
    tray->openMenu();
    EXPECT_TRUE(becomesTrue([this] { return tray->menu().contains("  Codex"); }));
    tray->click("Quit Morvane");
    EXPECT_EQ(program->wait(), 0);
}

} // namespace
} // namespace morvane
