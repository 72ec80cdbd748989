#include "EndToEnd/ProgramOnScreen.h"
#include "Support/Printing.h"
#include "Support/TrayWatcher.h"

#include <QDBusArgument>
#include <QTimer>

#include <cstdio>

namespace morvane {
namespace {

constexpr const char *menuInterface = "com.canonical.dbusmenu";

/// The program on a desktop whose tray comes and goes, and what a person would see of its menu.
class TrayTest : public ProgramOnScreen {
protected:
    /// Its items: a line with the check mark, the text and the key of each, and its id.
    struct Menu {
        QStringList lines;
        QList<int> ids;
    };

    void startAll() override {
        program = start({executable});
        ASSERT_TRUE(home.waitForHook());
        const QString address = display->environment().value("DBUS_SESSION_BUS_ADDRESS");
        bus = QDBusConnection::connectToBus(address, address);
    }

    void openTray() {
        tray = std::make_unique<TrayWatcher>(bus);
        ASSERT_TRUE(becomesTrue([this] { return !tray->item.isEmpty(); }));
    }

    /// Answers what the program asks while this waits.
    QVariant ask(const QString &method, const QVariantList &arguments, qsizetype result = 0) const {
        auto message =
            QDBusMessage::createMethodCall(tray->item, "/MenuBar", menuInterface, method);
        message.setArguments(arguments);
        return bus.call(message, QDBus::BlockWithGui).arguments().value(result);
    }
    Menu menu() const {
        Menu result;
        const QVariant layout = ask("GetLayout", {0, -1, QStringList()}, 1);
        if (layout.canConvert<QDBusArgument>()) {
            read(layout.value<QDBusArgument>(), -1, result);
        }
        return result;
    }
    /// The root isn't an item itself.
    static void read(const QDBusArgument &layout, qsizetype depth, Menu &into) {
        int id = 0;
        QVariantMap of;
        layout.beginStructure();
        layout >> id >> of;
        if (depth >= 0 && of["type"] != "separator" && of.value("visible", true).toBool()) {
            const QString mark = of["toggle-state"].toInt() == 1 ? "[x] " : "";
            const QString keys = qdbus_cast<QList<QStringList>>(of["shortcut"]).value(0).join('+');
            into.lines << QString(2 * depth, ' ') + mark + of["label"].toString().remove('_') +
                              (keys.isEmpty() ? "" : " <" + keys + ">");
            into.ids << id;
        }
        layout.beginArray();
        while (!layout.atEnd()) {
            QDBusVariant child;
            layout >> child;
            read(child.variant().value<QDBusArgument>(), depth + 1, into);
        }
        layout.endArray();
        layout.endStructure();
    }

    void openMenu() const { ask("AboutToShow", {0}); }
    void click(const QString &line) const {
        const Menu now = menu();
        const int id = now.ids.value(now.lines.indexOf(line), -1);
        ask("Event", {id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0u});
    }

    QString executable = MORVANE;
    QDBusConnection bus{"none yet"};
    std::unique_ptr<TrayWatcher> tray;
};

/// An installed program that has asked an agent for its limits and gets no answer.
class RestartTest : public TrayTest {
protected:
    RestartTest() {
        executable = home.path("morvane");
        QFile::copy(MORVANE, executable);
        home.writeProgram(".local/bin/codex", "#!/bin/sh\ntouch ~/asked\nexec cat >/dev/null\n");
        home.write(".codex/auth.json");
        const QString settings = ".config/morvane/io.morvane.morvane.json";
        home.write(settings, home.read(settings).replace(R"("usageEnabled": false)",
                                                         R"("usageEnabled": true)"));
    }
};

TEST_F(TrayTest, ComesBackWithATrayAndKeepsItsMenuTrueWhileThatIsOpen) {
    ASSERT_NO_FATAL_FAILURE(openTray());
    tray.reset();
    ASSERT_NO_FATAL_FAILURE(openTray());
    openMenu();
    EXPECT_EQ(menu().lines.mid(1), (QStringList{"Open Morvane <Super+Shift+G>",
                                                "Settings… <Control+,>", "Connected agents — 1",
                                                "  [x] Claude Code", "Quit Morvane <Control+Q>"}));

    // Only a slot can be connected to a signal of the bus; this one is called when the menu has
    // changed.
    QTimer change;
    for (const char *signal : {"LayoutUpdated", "ItemsPropertiesUpdated"}) {
        bus.connect(tray->item, {}, menuInterface, signal, &change, SLOT(start()));
    }
    click("  [x] Claude Code");
    EXPECT_TRUE(becomesTrue([&] { return change.isActive(); }));
    EXPECT_TRUE(becomesTrue([this] {
        return menu().lines.mid(3, 2) == QStringList{"Connected agents — none", "  Claude Code"};
    }));

    home.write(".codex/config.toml", "");
    openMenu();
    EXPECT_TRUE(becomesTrue([this] { return menu().lines.contains("  Codex"); }));
    // A host that draws no menus asks the program to show its own.
    const auto windows = [this] {
        std::optional<QByteArray> found;
        EXPECT_TRUE(waitUntil([&] {
            found = start({"xdotool", "search", "--onlyvisible", "--class", "^morvane$"})
                        ->outputAtEnd();
            return found.has_value();
        }));
        return found.value_or(QByteArray()).count('\n');
    };
    const auto before = windows();
    auto asked = QDBusMessage::createMethodCall(tray->item, "/StatusNotifierItem",
                                                "org.kde.StatusNotifierItem", "ContextMenu");
    asked.setArguments({0, 0});
    bus.call(asked, QDBus::BlockWithGui);
    EXPECT_TRUE(becomesTrue([&] { return windows() > before; }));
    click("Quit Morvane <Control+Q>");
    EXPECT_EQ(program->wait(), 0);
}

TEST_F(RestartTest, BecomesWhatIsInstalledWhileItStillWaitsForSomething) {
    ASSERT_NO_FATAL_FAILURE(openTray());
    ASSERT_TRUE(waitUntil([this] { return QFile::exists(home.path("asked")); }));
    ASSERT_TRUE(QFile::copy(MORVANE, home.path("new")));
    ASSERT_EQ(std::rename(qPrintable(home.path("new")), qPrintable(executable)), 0);
    openMenu();
    click("A new Morvane is installed: restart");
    tray->item.clear();
    EXPECT_TRUE(becomesTrue([this] { return !tray->item.isEmpty(); }));
    EXPECT_TRUE(program->isRunning());
}

} // namespace
} // namespace morvane
