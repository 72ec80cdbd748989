#include "EndToEnd/ProgramOnScreen.h"
#include "EndToEnd/TrayHost.h"
#include "Support/Printing.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <memory>

namespace morvane {
namespace {

constexpr std::uint32_t gray = 0xff8e8e93;
constexpr std::uint32_t blue = 0xff0a84ff;
constexpr std::uint32_t red = 0xffff453a;
constexpr std::uint32_t green = 0xff30d158;
constexpr std::uint32_t orange = 0xffff9f0a;

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

    void tell(const char *event) const {
        const auto hook =
            start(home.hook({"claude", event}),
                  QByteArray(R"({"session_id":"s","hook_event_name":")") + event + "\"}");
        EXPECT_EQ(hook->wait(), 0);
    }

    /// Sends the event and waits for its colour.
    bool turns(const char *event, std::uint32_t color) {
        tell(event);
        return becomesTrue([&] { return tray->iconColor() == color; });
    }

    int count = 1;
    char name[5] = "test";
    char *arguments[2] = {name, nullptr};
    QCoreApplication application{count, arguments};
    std::unique_ptr<TrayHost> tray;
};

TEST_F(TrayTest, ShowsItsStateInATrayThatComesLateAndComesBack) {
    openTray();
    ASSERT_TRUE(hasItem());
    EXPECT_TRUE(becomesTrue([this] { return tray->iconColor() == gray; }));
    const int before = tray->iconChanges();
    EXPECT_TRUE(turns("UserPromptSubmit", blue));
    tell("PreToolUse");
    tell("PostToolUse");
    EXPECT_TRUE(turns("PermissionRequest", red));
    EXPECT_EQ(tray->iconChanges(), before + 2);
    EXPECT_TRUE(turns("Stop", green));

    tray.reset();
    openTray();
    ASSERT_TRUE(hasItem());
    EXPECT_TRUE(becomesTrue([this] { return tray->iconColor() == green; }));
    EXPECT_TRUE(turns("StopFailure", orange));
    EXPECT_TRUE(turns("SessionEnd", gray));
}

TEST_F(TrayTest, KeepsItsMenuTrueWhileTheTrayHasItOpen) {
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
