#include "EndToEnd/ProgramOnScreen.h"

#include <algorithm>

namespace morvane {
namespace {

constexpr const char *permissionRequest =
    R"({"hook_event_name":"PermissionRequest","session_id":"s","tool_name":"Bash",)"
    R"("tool_use_id":"toolu_1","tool_input":{"command":"make"}})";
constexpr const char *allowAnswer =
    R"({"hookSpecificOutput":{"decision":{"behavior":"allow"},"hookEventName":"PermissionRequest"}})";

/// The program above a terminal that fills the screen.
class ScreenTest : public ProgramOnScreen {
protected:
    using ProgramOnScreen::ProgramOnScreen;

    void startAll() override {
        ASSERT_NO_FATAL_FAILURE(startTerminal(terminalOptions));
        program = start({MORVANE});
        ASSERT_TRUE(home.waitForHook());
        ASSERT_TRUE(waitUntil([this] { return tab().has_value(); }));
    }

    /// A hook that waits for a decision.
    std::unique_ptr<ChildProcess> ask() const {
        return start(home.hook({"claude", "PermissionRequest", "decide"}), permissionRequest);
    }

    std::optional<QRect> allowButton() const { return find("button", "Allow"); }

    std::optional<QRect> menuItem(const char *name, const QStringList &options = {}) const {
        return find("menu item", QString::fromUtf8(name), options);
    }

    /// Clicks an item of a menu once it is there.
    testing::AssertionResult choose(const char *name) const {
        if (!waitUntil([&] { return menuItem(name).has_value(); })) {
            return testing::AssertionFailure() << "there is no item \"" << name << "\"";
        }
        display->click(menuItem(name).value_or(QRect()).center());
        return testing::AssertionSuccess();
    }

    bool isOpen() const { return tab().value_or(QRect()).width() >= 520; }

    /// Puts the pointer on the capsule and waits until the panel shows its button.
    testing::AssertionResult hoverUntilAllowIsShown() const {
        display->movePointer(tab().value_or(QRect()).center());
        return waitUntil([this] { return allowButton().has_value(); })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "the panel shows no \"Allow\"";
    }

    QStringList terminalOptions{"-fullscreen"};
};

/// On each window manager that is installed.
class ManagedScreenTest : public ScreenTest, public testing::WithParamInterface<WindowManager> {
protected:
    ManagedScreenTest() : ScreenTest(GetParam()) {}
};

TEST_P(ManagedScreenTest, TakesNoKeyFromTheTerminalWhileARequestIsAllowed) {
    const QString text = QStringLiteral("the quick brown fox jumps over it ").repeated(8);
    const auto typing = display->type(text);

    const auto hook = ask();
    EXPECT_TRUE(terminalHasKeyboard());
    ASSERT_TRUE(hoverUntilAllowIsShown());
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(terminalHasKeyboard());
    display->click(allowButton().value_or(QRect()).center());
    EXPECT_EQ(hook->wait(), 0);
    EXPECT_EQ(hook->output(), allowAnswer);
    EXPECT_TRUE(terminalHasKeyboard());
    display->movePointer({10, 790});
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
    EXPECT_TRUE(terminalHasKeyboard());

    EXPECT_EQ(typing->wait(), 0);
    EXPECT_TRUE(waitUntil([&] { return received().size() >= text.size(); }));
    EXPECT_EQ(received(), text.toUtf8());

    display->goToDesktop(1);
    EXPECT_TRUE(waitUntil([this] { return !terminalHasKeyboard(); }));
    display->movePointer(tab().value_or(QRect()).center());
    EXPECT_TRUE(waitUntil([this] { return isOpen(); }));
}

TEST_P(ManagedScreenTest, ARenameHasTheKeyboardUntilItEnds) {
    const auto hook = start(home.hook({"claude", "UserPromptSubmit"}),
                            R"({"session_id":"s","cwd":"/srv/webshop","prompt":"Pay"})");
    EXPECT_EQ(hook->wait(), 0);
    const auto row = [this](const char *name) {
        return find("button", QString::fromUtf8(name) + QStringLiteral(", working… · Pay"));
    };
    const auto openField = [&] {
        display->movePointer(tab().value_or(QRect()).center());
        EXPECT_TRUE(waitUntil([&] { return find("button", "Rename this session").has_value(); }));
        display->click(find("button", "Rename this session").value_or(QRect()).center());
        EXPECT_TRUE(waitUntil([this] { return !terminalHasKeyboard(); }));
    };
    openField();
    display->movePointer({10, 790});
    EXPECT_EQ(display->type("Invoices")->wait(), 0);
    EXPECT_TRUE(isOpen());
    display->press("Return");
    EXPECT_TRUE(waitUntil([this] { return terminalHasKeyboard(); }));
    // A pencil of a panel that is about to close is none to aim at.
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
    openField();
    EXPECT_TRUE(row("Invoices"));
    EXPECT_EQ(display->type("Receipts")->wait(), 0);
    display->press("Escape");
    EXPECT_TRUE(waitUntil([this] { return terminalHasKeyboard(); }));
    EXPECT_TRUE(row("Invoices"));

    EXPECT_EQ(display->type("typed")->wait(), 0);
    EXPECT_TRUE(waitUntil([this] { return received().endsWith("typed"); }));
    EXPECT_EQ(received(), "typed");
}

TEST_F(ScreenTest, OpensThePanelWhenStartedAgain) {
    const auto hook = ask();
    EXPECT_FALSE(isOpen());
    // What was last typed, and where, must not keep the window that is asked for in the background.
    EXPECT_EQ(display->type("morvane")->wait(), 0);
    const auto second = start({MORVANE});
    EXPECT_EQ(second->wait(), 0);
    EXPECT_TRUE(waitUntil([this] { return isOpen() && allowButton(); }));
    EXPECT_TRUE(waitUntil([this] { return display->focusedTitle() == "Morvane Settings"; }));
    EXPECT_TRUE(program->isRunning());
}

TEST_F(ScreenTest, ARightClickOpensTheMenuAndTheTerminalKeepsTheFocus) {
    home.write(".claude/settings.json", "{}");
    display->click(tab().value_or(QRect()).center(), 3);
    ASSERT_TRUE(choose("Connected agents — none"));
    ASSERT_TRUE(waitUntil([this] { return menuItem("Claude Code").has_value(); }));
    EXPECT_TRUE(terminalHasKeyboard());
    ASSERT_TRUE(choose("Claude Code"));
    EXPECT_TRUE(waitUntil([this] { return !menuItem("Quit Morvane"); }));

    display->click(tab().value_or(QRect()).center(), 3);
    ASSERT_TRUE(choose("Connected agents — 1"));
    EXPECT_TRUE(waitUntil([this] { return menuItem("Claude Code", {"--checked"}).has_value(); }));
    EXPECT_TRUE(isOpen());
    display->press("Escape");
    display->press("Escape");
    EXPECT_TRUE(waitUntil([this] { return !menuItem("Quit Morvane"); }));
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));

    display->click(tab().value_or(QRect()).center(), 3);
    EXPECT_TRUE(waitUntil([this] { return menuItem("Quit Morvane").has_value(); }));
    display->click({640, 700});
    EXPECT_TRUE(waitUntil([this] { return !menuItem("Quit Morvane"); }));
    EXPECT_EQ(display->type("typed")->wait(), 0);
    EXPECT_TRUE(waitUntil([this] { return received().endsWith("typed"); }));
    EXPECT_TRUE(terminalHasKeyboard());

    display->click(tab().value_or(QRect()).center(), 3);
    ASSERT_TRUE(choose("Quit Morvane"));
    EXPECT_EQ(program->wait(), 0);
}

TEST_P(ManagedScreenTest, LetsClicksBesideItsRoundedCornersThrough) {
    const QRect capsule = tab().value_or(QRect());
    display->click(capsule.bottomLeft() + QPoint(1, -1));
    EXPECT_TRUE(waitUntil([this] { return received().contains(leftPress); }));
    display->click(capsule.center());
    // Once this one has come through, the one before would have.
    display->click({640, 700}, 3);
    EXPECT_TRUE(waitUntil([this] { return received().contains(rightPress); }));
    EXPECT_EQ(received().count(leftPress), 1);
}

/// Told to give way to full-screen programs.
class YieldingScreenTest : public ScreenTest, public testing::WithParamInterface<WindowManager> {
protected:
    YieldingScreenTest()
        : ScreenTest(GetParam(), {{"showWhenIdle", true}, {"hideOverFullscreen", true}}) {
        terminalOptions.clear();
    }
};

TEST_P(YieldingScreenTest, IsThereOnlyWhileNoProgramFillsTheScreen) {
    const auto hook = ask();
    display->press("alt+Return");
    EXPECT_TRUE(waitUntil([this] { return !tab(); }));
    display->click({640, 10});
    EXPECT_TRUE(waitUntil([this] { return received().contains(leftPress); }));
    EXPECT_FALSE(tab());
    EXPECT_TRUE(terminalHasKeyboard());
    display->press("alt+Return");
    EXPECT_TRUE(waitUntil([this] { return allowButton().has_value(); }));
    EXPECT_TRUE(terminalHasKeyboard());
}

const auto nameOf = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(Under, ManagedScreenTest, testing::ValuesIn(WindowManager::all), nameOf);
INSTANTIATE_TEST_SUITE_P(Under, YieldingScreenTest, testing::ValuesIn(WindowManager::all), nameOf);

/// One or more monitors, each with a capsule of its own.
class MonitorsTest : public ScreenTest {
protected:
    MonitorsTest()
        : ScreenTest(WindowManager::openbox, {{"showWhenIdle", true}, {"displayMode", "all"}}) {}

    /// Waits until there are capsules under exactly these points, from left to right.
    testing::AssertionResult hangUnder(const QList<QPoint> &points) const {
        QList<QRect> tabs;
        const bool isSo = waitUntil([&] {
            tabs = display->visibleWindows("^[Mm]orvane$");
            return std::ranges::equal(tabs, points, [](const QRect &tab, const QPoint &point) {
                return tab.top() == point.y() && std::abs(tab.center().x() - point.x()) <= 1;
            });
        });
        if (isSo) {
            return testing::AssertionSuccess();
        }
        auto failure = testing::AssertionFailure() << "they are at";
        for (const QRect &tab : tabs) {
            failure << ' ' << tab.center().x() << ',' << tab.top();
        }
        return failure;
    }
};

TEST_F(MonitorsTest, EachHasOneCapsuleAsTheyComeGoAndChange) {
    EXPECT_TRUE(hangUnder({{640, 0}}));
    display->setMonitor("LEFT", {0, 0, 640, 800});
    display->setMonitor("RIGHT", {640, 0, 640, 800});
    EXPECT_TRUE(hangUnder({{320, 0}, {960, 0}}));

    display->movePointer({320, 5});
    EXPECT_TRUE(waitUntil([this] { return isOpen(); }));
    display->removeMonitor("RIGHT");
    display->setMonitor("RIGHT", {640, 200, 400, 600});
    EXPECT_TRUE(hangUnder({{320, 0}, {840, 200}}));
    EXPECT_TRUE(isOpen());

    display->removeMonitor("LEFT");
    display->removeMonitor("RIGHT");
    EXPECT_TRUE(hangUnder({{640, 0}}));
    display->setMonitor("LEFT", {0, 0, 500, 800});
    display->setMonitor("RIGHT", {500, 0, 780, 800});
    EXPECT_TRUE(hangUnder({{250, 0}, {890, 0}}));
    EXPECT_TRUE(program->isRunning());
}

} // namespace
} // namespace morvane
