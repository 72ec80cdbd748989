#include "Platform/Linux/Desktop/TerminalTabs.h"

#include "Platform/Linux/TerminalProcesses.h"
#include "Platform/PrivateBusTest.h"

#include <QDBusMetaType>

namespace morvane {
namespace {

class TerminalTabsTest : public PrivateBusTest {
protected:
    /// The outcome as a text: "shown" where the terminal shows the window itself, the window's
    /// number and the tab's title.
    QString select(const TerminalProcesses &processes) {
        TerminalTabs tabs(connection("program"));
        std::optional<TerminalTabs::Outcome> outcome;
        tabs.select(processes, [&](const auto &told) { outcome = told; });
        EXPECT_TRUE(becomesTrue([&] { return outcome.has_value(); }));
        return (outcome->isShown ? "shown " : "") + outcome->windowID + ":" + outcome->title;
    }

    TerminalProcesses konsole() {
        return {{{41, "bash"}, {40, "konsole"}},
                {"KONSOLE_DBUS_SERVICE=" + service(), "KONSOLE_DBUS_SESSION=/Sessions/3",
                 "KONSOLE_DBUS_WINDOW=/Windows/1", "WINDOWID=77"}};
    }

    TerminalProcesses gnomeTerminal() {
        return {{{41, "bash"}, {40, "gnome-terminal-"}},
                {"GNOME_TERMINAL_SERVICE=" + service(),
                 "GNOME_TERMINAL_SCREEN=/org/gnome/Terminal/screen/a_b_c"}};
    }

    QByteArray service() { return connection("terminal").baseService().toUtf8(); }
};

TEST_F(TerminalTabsTest, KonsoleSelectsTheTabOfTheShell) {
    BusService terminal(connection("terminal"), "/", "org.example.Terminal");
    terminal.answers = {{"/Sessions/3 processId()", {41}},
                        {"/Sessions/3 title(1)", {"shop : bash"}},
                        {"/Windows/1 sessionList()", {QStringList({"2", "3"})}},
                        {"/Windows/1 setCurrentSession(3)", {}}};
    EXPECT_EQ(select(konsole()), "77:");
    EXPECT_EQ(terminal.asked.last(), "/Windows/1 setCurrentSession(3)");

    // The tab has been dragged into another window, which has to be found by its title.
    terminal.answers["/Windows/1 sessionList()"] = {QStringList("2")};
    terminal.answers["/Windows Introspect()"] = {"<node><node name='1'/><node name='4'/></node>"};
    EXPECT_EQ(select(konsole()), ":shop : bash");
    EXPECT_TRUE(terminal.asked.contains("/Windows/4 setCurrentSession(3)"));

    // A terminal that was started in Konsole's shell, and inherited its variables.
    terminal.asked.clear();
    terminal.answers["/Sessions/3 processId()"] = {12};
    EXPECT_EQ(select(konsole()), "77:");
    EXPECT_EQ(terminal.asked, QStringList("/Sessions/3 processId()"));
}

TEST_F(TerminalTabsTest, GnomeTerminalShowsTheTabWhereItCanBeSearched) {
    BusService terminal(connection("terminal"), "/", "org.example.Terminal");
    qDBusRegisterMetaType<QList<QVariantMap>>();
    const QString place = "/org/gnome/Terminal/SearchProvider ";
    EXPECT_EQ(select(gnomeTerminal()), ":");
    EXPECT_EQ(terminal.asked, QStringList(place + "GetResultMetas(a-b-c)"));

    terminal.answers = {{place + "GetResultMetas(a-b-c)",
                         {QVariant::fromValue(QList<QVariantMap>{{{"name", "shop"}}})}},
                        {place + "ActivateResult(a-b-c,0)", {}}};
    EXPECT_EQ(select(gnomeTerminal()), "shown :shop");
    EXPECT_EQ(terminal.asked.last(), place + "ActivateResult(a-b-c,0)");
}

TEST_F(TerminalTabsTest, ATerminalThatTellsNothingHasItsWindowAtMost) {
    EXPECT_EQ(select({{{41, "bash"}, {40, "xterm"}}, {"WINDOWID=5"}}), "5:");
    EXPECT_EQ(select({}), ":");
}

} // namespace
} // namespace morvane
