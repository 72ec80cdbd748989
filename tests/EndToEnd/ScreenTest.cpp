#include "EndToEnd/ProgramOnScreen.h"

#include <QElapsedTimer>

namespace morvane {
namespace {

constexpr const char *permissionRequest =
    R"({"hook_event_name":"PermissionRequest","session_id":"s","tool_name":"Bash",)"
    R"("tool_use_id":"toolu_1","tool_input":{"command":"make"}})";
constexpr const char *allowAnswer =
    R"({"hookSpecificOutput":{"decision":{"behavior":"allow"},"hookEventName":"PermissionRequest"}})";

constexpr const char *panelKey = "super+shift+g";

/// The program above a terminal that fills the screen.
class ScreenTest : public ProgramOnScreen {
protected:
    using ProgramOnScreen::ProgramOnScreen;

    void startAll() override {
        ASSERT_NO_FATAL_FAILURE(startTerminal({"-fullscreen"}));
        ASSERT_NO_FATAL_FAILURE(startProgram());
    }
    void startProgram() {
        program = start({MORVANE});
        ASSERT_TRUE(home.waitForHook());
        ASSERT_TRUE(waitUntil([this] { return !tab().isNull(); }));
    }

    /// A hook that waits for a decision.
    std::unique_ptr<ChildProcess> ask() const {
        return start(home.hook({"claude", "PermissionRequest", "decide"}), permissionRequest);
    }

    bool isOpen() const { return tab().width() >= 520; }
    void movePointerToTab() const { display->movePointer(tab().center()); }
    void movePointerAway() const { display->movePointer({10, 790}); }

    /// Clicks an object once it is there.
    testing::AssertionResult click(const QString &role, const QString &name) const {
        if (!waitUntil([&] { return find(role, name).has_value(); })) {
            return testing::AssertionFailure() << "no " << qPrintable(role + ' ' + name);
        }
        // Its place is asked for again: when first seen, it may still have been moving.
        display->click(find(role, name).value_or(QRect()).center());
        return testing::AssertionSuccess();
    }
};

/// On each window manager that is installed.
class ManagedScreenTest : public ScreenTest, public testing::WithParamInterface<WindowManager> {
protected:
    ManagedScreenTest() : ScreenTest(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Under, ManagedScreenTest, testing::ValuesIn(WindowManager::all),
                         [](const auto &info) { return info.param.name; });

TEST_P(ManagedScreenTest, TakesNoKeyFromTheTerminalWhileARequestIsAllowed) {
    const QString text = QStringLiteral("the quick brown fox jumps over it ").repeated(8);
    const auto typing = display->type(text);
    const auto hook = ask();
    movePointerToTab();
    ASSERT_TRUE(click("button", "Allow"));
    EXPECT_EQ(hook->outputAtEnd(), allowAnswer);
    EXPECT_TRUE(terminalHasKeyboard());
    movePointerAway();
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
    EXPECT_EQ(typing->wait(), 0);
    EXPECT_TRUE(waitUntil([&] { return received().size() >= text.size(); }));
    EXPECT_EQ(received(), text.toUtf8());
}

TEST_P(ManagedScreenTest, AClickThatComesTooSoonAllowsNothing) {
    const auto harmless = ask();
    movePointerToTab();
    ASSERT_TRUE(waitUntil([this] { return find("button", "Allow").has_value(); }));
    const QPoint allow = find("button", "Allow").value_or(QRect()).center();

    // Another call takes its place, under a pointer that goes on clicking.
    QElapsedTimer time;
    time.start();
    QByteArray other(permissionRequest);
    other.replace("toolu_1", "toolu_2").replace("make", "rm -rf ~");
    const auto harmful = start(home.hook({"claude", "PermissionRequest", "decide"}), other);
    EXPECT_EQ(harmless->outputAtEnd(), "");
    EXPECT_TRUE(waitUntil([&] {
        display->click(allow);
        return !harmful->isRunning();
    }));
    EXPECT_EQ(harmful->output(), allowAnswer);
    EXPECT_GE(time.elapsed(), 700);
}

TEST_P(ManagedScreenTest, ARenameHasTheKeyboardUntilItEnds) {
    const QByteArray prompt = R"({"session_id":"s","cwd":"/srv/webshop","prompt":"Pay"})";
    EXPECT_EQ(start(home.hook({"claude", "UserPromptSubmit"}), prompt)->wait(), 0);
    movePointerToTab();
    ASSERT_TRUE(click("button", "Rename"));
    EXPECT_TRUE(waitUntil([this] { return !terminalHasKeyboard(); }));
    movePointerAway();
    EXPECT_EQ(display->type("Invoices")->wait(), 0);
    EXPECT_TRUE(isOpen());
    display->press("Return");
    EXPECT_TRUE(waitUntil([this] { return terminalHasKeyboard(); }));
    EXPECT_EQ(display->type("typed")->wait(), 0);
    EXPECT_TRUE(waitUntil([this] { return received().endsWith("typed"); }));
    EXPECT_EQ(received(), "typed");
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
    movePointerToTab();
    EXPECT_TRUE(
        waitUntil([this] { return find("button", "Invoices, working… · Pay").has_value(); }));
}

TEST_P(ManagedScreenTest, AnswersByTheKeyboardAloneWhichTheTerminalHasBackThen) {
    const auto hook = ask();
    display->press(panelKey);
    EXPECT_TRUE(waitUntil([this] { return !terminalHasKeyboard(); }));
    ASSERT_TRUE(waitUntil([this] { return find("button", "Deny").has_value(); }));
    // From the row to its buttons, past the call, which takes the keyboard focus while a screen
    // reader may be there.
    display->press("Down");
    display->press("Down");
    display->press("Right");
    display->press("Return");
    EXPECT_EQ(hook->outputAtEnd(), allowAnswer);
    EXPECT_TRUE(isOpen());
    // A digit answers as well.
    ASSERT_TRUE(waitUntil([this] { return !find("button", "Deny"); }));
    const auto next = ask();
    ASSERT_TRUE(waitUntil([this] { return find("button", "Deny").has_value(); }));
    display->press("ctrl+2");
    EXPECT_EQ(next->outputAtEnd(), allowAnswer);
    display->press("Escape");
    EXPECT_TRUE(waitUntil([this] { return terminalHasKeyboard(); }));
    EXPECT_EQ(display->type("typed")->wait(), 0);
    // With the panel closed these keys go to the terminal.
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
    display->press("Escape");
    display->press("ctrl+2");
    EXPECT_TRUE(waitUntil([this] { return received().size() >= 7; }));
    EXPECT_EQ(received(), QByteArray("typed\x1b\0", 7));
}

TEST_F(ScreenTest, AWaitingHookIsSilentWhenTheProgramEnds) {
    for (const auto end : {&ChildProcess::kill, &ChildProcess::terminate}) {
        const auto hook = ask();
        movePointerToTab();
        EXPECT_TRUE(waitUntil([this] { return find("button", "Allow").has_value(); }));
        EXPECT_TRUE(hook->isRunning());
        (*program.*end)();
        EXPECT_EQ(hook->outputAtEnd(), "") << (end == &ChildProcess::kill ? "killed" : "ended");
        movePointerAway();
        ASSERT_NO_FATAL_FAILURE(startProgram());
    }
}

TEST_F(ScreenTest, AScreenReaderOpensAndAnswersByActionsAlone) {
    const auto hook = ask();
    const auto act = [this](const char *action, const char *role, const char *name) {
        return start({FIND_ACCESSIBLE, "--do", action, role, name, "10"})->wait() == 0;
    };
    EXPECT_TRUE(waitUntil(
        [this] { return find("notification", "session, waiting to run Bash").has_value(); }));
    ASSERT_TRUE(act("ShowMenu", "filler", "Morvane"));
    EXPECT_TRUE(waitUntil([this] { return find("menu item", "Quit Morvane").has_value(); }));
    display->press("Escape");
    ASSERT_TRUE(act("Press", "filler", "Morvane"));
    EXPECT_TRUE(waitUntil([this] { return isOpen() && !terminalHasKeyboard(); }));
    ASSERT_TRUE(act("Press", "button", "Allow Bash in session"));
    EXPECT_EQ(hook->outputAtEnd(), allowAnswer);
}

TEST_F(ScreenTest, OpensThePanelWhenStartedAgain) {
    const auto hook = ask();
    EXPECT_FALSE(isOpen());
    // The last key, typed in another window, must not keep the requested window in the background.
    EXPECT_EQ(display->type("morvane")->wait(), 0);
    EXPECT_EQ(start({MORVANE})->wait(), 0);
    EXPECT_TRUE(waitUntil([this] { return isOpen() && find("button", "Allow"); }));
    EXPECT_TRUE(waitUntil([this] { return display->focusedTitle() == "Morvane Settings"; }));
    EXPECT_TRUE(program->isRunning());
}

TEST_F(ScreenTest, TakesThePlaceOfOneWithoutAScreenAndOfNoneOnAnotherDisplay) {
    program->terminate();
    EXPECT_EQ(program->wait(), 0);
    QFile::remove(home.path(".morvane/hook.sh"));
    ChildProcess unseen({MORVANE}, home.environment());
    ASSERT_TRUE(home.waitForHook());
    for (const char *event : {"UserPromptSubmit", "Stop"}) {
        const auto hook = start(home.hook({"claude", event}), R"({"session_id":"s","cwd":"/p"})");
        EXPECT_EQ(hook->wait(), 0);
    }

    program = start({MORVANE});
    EXPECT_EQ(unseen.wait(), 0);
    EXPECT_TRUE(waitUntil([this] { return !tab().isNull(); }));
    EXPECT_TRUE(home.read(".config/morvane/io.morvane.morvane.json").contains("completedHistory"));

    // As in a second session of the same person: nobody is disturbed at a login.
    QProcessEnvironment other = display->environment();
    other.insert("DISPLAY", "unix" + other.value("DISPLAY"));
    EXPECT_EQ(ChildProcess({MORVANE, "--at-login"}, other).wait(), 1);
    const ChildProcess second({MORVANE}, other);
    EXPECT_TRUE(waitUntil([this] { return display->focusedTitle() == "Morvane"; }));
}

TEST_F(ScreenTest, ARightClickOpensTheMenuAndTheTerminalKeepsTheFocus) {
    const auto hasMenu = [this] { return find("menu item", "Quit Morvane").has_value(); };
    const auto openMenu = [&] {
        // A point that is on the tab at any size, since it may be about to close.
        display->click({tab().center().x(), tab().top() + 10}, 3);
        EXPECT_TRUE(waitUntil([&] { return hasMenu() && isOpen(); }));
        EXPECT_TRUE(terminalHasKeyboard());
    };
    openMenu();
    movePointerAway();
    display->press("Escape");
    EXPECT_TRUE(waitUntil([&] { return !hasMenu() && !isOpen(); }));

    openMenu();
    display->click({640, 700});
    EXPECT_TRUE(waitUntil([&] { return !hasMenu(); }));
    EXPECT_EQ(display->type("typed")->wait(), 0);
    EXPECT_TRUE(waitUntil([this] { return received().endsWith("typed"); }));
    EXPECT_TRUE(terminalHasKeyboard());

    openMenu();
    ASSERT_TRUE(click("menu item", "Quit Morvane"));
    EXPECT_EQ(program->wait(), 0);
}

/// On a display that is said to have a notch.
class NotchScreenTest : public ScreenTest {
protected:
    void startAll() override {
        movePointerAway();
        ASSERT_NO_FATAL_FAILURE(startTerminal());
        program = start({NOTCHED_MORVANE, "200x32"});
        ASSERT_TRUE(becomesClosed());
    }

    bool becomesClosed() const {
        return waitUntil([this] { return tab() == QRect(444, 0, 392, 32); });
    }
};

TEST_F(NotchScreenTest, OpensUnderTheRestingPointerAgainAndAgain) {
    for (int round = 0; round < 2; ++round) {
        display->movePointer({640, 5});
        EXPECT_TRUE(waitUntil([this] { return tab().width() >= 550; }));
        EXPECT_TRUE(terminalHasKeyboard());
        // On the panel, beside the notch: a movement that comes after a rest.
        display->movePointer(tab().bottomLeft() + QPoint(40, -20));
        movePointerAway();
        EXPECT_TRUE(becomesClosed());
    }
}

} // namespace
} // namespace morvane
