#include "App/StatusMenu.h"

#include "App/AppFixture.h"

#include <QKeyEvent>

namespace morvane {
namespace {

class StatusMenuTest : public ControllerFixture {
protected:
    /// What a menu shows, a line for each item.
    static QString lines(const QMenu &menu) {
        QStringList result;
        for (const QAction *action : menu.actions()) {
            if (action->isVisible()) {
                const QString mark = action->isChecked() ? "[x] " : QString();
                const QString ghost = action->isEnabled() ? QString() : " (off)";
                result.append(action->isSeparator() ? "-" : mark + action->text() + ghost);
            }
        }
        return result.join(QLatin1Char('\n'));
    }

    QMenu &agents() { return *statusMenu.menu().findChild<QMenu *>(); }
    QString agentLines() { return lines(agents()); }

    void open() { emit statusMenu.menu().aboutToShow(); }

    QAction *agent(const char *name) {
        for (QAction *action : agents().actions()) {
            if (action->text() == QLatin1String(name)) {
                return action;
            }
        }
        return nullptr;
    }

    StatusMenu statusMenu{connections, controller.updates()};
};

TEST_F(StatusMenuTest, TellsWhoHasTheKeyForThePanel) {
    const auto line = [this](HotKeys::State state, bool isDesktops = false) {
        statusMenu.showPanelKey(settings.panelKey(), state, isDesktops);
        return lines(statusMenu.menu()).split(u'\n')[3];
    };
    const auto key = [this] { return statusMenu.menu().actions()[3]->shortcut().toString(); };
    EXPECT_EQ(line(HotKeys::State::taken), "Super+Shift+G is taken by another program (off)");
    EXPECT_EQ(key(), "");
    EXPECT_EQ(line(HotKeys::State::works), "Settings…");
    EXPECT_EQ(key(), "Meta+Shift+G");
    line(HotKeys::State::works, true);
    EXPECT_EQ(key(), "");
}

TEST_F(StatusMenuTest, ObeysItsKeysWhileItIsOpen) {
    home.write(".claude/settings.json", "{}");
    QString asked;
    QObject::connect(&statusMenu, &StatusMenu::settingsRequested, &statusMenu,
                     [&] { asked += "settings "; });
    QObject::connect(&statusMenu, &StatusMenu::panelRequested, &statusMenu,
                     [&] { asked += "panel "; });
    const auto press = [](QMenu &menu, Qt::Key key) {
        send(menu, QKeyEvent(QEvent::KeyPress, key, Qt::ControlModifier));
    };
    statusMenu.menu().popup({});
    press(statusMenu.menu(), Qt::Key_Period);
    EXPECT_EQ(asked, "");
    EXPECT_TRUE(statusMenu.menu().isVisible());
    press(statusMenu.menu(), Qt::Key_Comma);
    EXPECT_EQ(asked, "settings ");
    EXPECT_FALSE(statusMenu.menu().isVisible());
    press(agents(), Qt::Key_Comma);
    statusMenu.menu().actions()[3]->trigger();
    EXPECT_EQ(asked, "settings settings panel ");
}

TEST_F(StatusMenuTest, ConnectsAndDisconnectsTheAgentsOfThisMachineOrTellsWhatWentWrong) {
    home.write(".claude/settings.json", "{}");
    home.write(".gemini/settings.json", "{}");
    open();
    EXPECT_EQ(agentLines(), "Claude Code\nGemini CLI");
    EXPECT_EQ(agent("Claude Code")->toolTip(), "<qt>~/.claude/settings.json</qt>");

    home.makeReadOnly(".claude/settings.json");
    agent("Claude Code")->trigger();
    EXPECT_FALSE(agent("Claude Code")->isChecked());
    // The line may be cut short, but not its beginning.
    EXPECT_TRUE(agentLines().startsWith("Claude Code\nGemini CLI\n-\nClaude Code connect"));
    EXPECT_TRUE(agentLines().endsWith(" (off)"));

    home.makeReadOnly(".claude/settings.json", false);
    agent("Claude Code")->trigger();
    EXPECT_EQ(agentLines(), "[x] Claude Code\nGemini CLI");
    EXPECT_EQ(agents().title(), "Connected agents — 1");
    const QAction *item = agent("Gemini CLI");
    connections.installHooks(AgentKind::gemini);
    EXPECT_TRUE(item->isChecked());
    agent("Claude Code")->trigger();
    EXPECT_EQ(agentLines(), "Claude Code\n[x] Gemini CLI");

    home.write(".gemini/settings.json",
               R"({"hooksConfig":{"enabled":false},)" + home.read(".gemini/settings.json").mid(1));
    open();
    EXPECT_TRUE(agentLines().endsWith("[x] Gemini CLI — hooks are switched off in its settings"));
}

} // namespace
} // namespace morvane
