#include "EndToEnd/ProgramOnScreen.h"

namespace morvane {
namespace {

constexpr QPoint onNotch(640, 5);
constexpr QPoint elsewhere(640, 700);

/// The program on a display that is said to have a notch, above a terminal that fills the screen
/// and notes the clicks that reach it.
class NotchScreenTest : public ProgramOnScreen {
protected:
    void startAll() override {
        display->movePointer(elsewhere);
        ASSERT_NO_FATAL_FAILURE(startTerminal());
        program = start({NOTCHED_MORVANE, "200x32"});
        ASSERT_TRUE(waitUntil([this] { return shell() == closed; }));
    }

    /// The black shell, closed or open.
    QRect shell() const { return tab().value_or(QRect()); }

    bool becomesOpen() const {
        return waitUntil([this] { return shell().width() >= 550; });
    }
    bool becomesClosed() const {
        return waitUntil([this] { return shell() == closed; });
    }

    qsizetype clicksOnTerminal() const { return received().count(leftPress); }

    const QRect closed{444, 0, 392, 32};
};

TEST_F(NotchScreenTest, OpensUnderTheRestingPointerAgainAndAgain) {
    for (int round = 0; round < 2; ++round) {
        display->movePointer(onNotch);
        EXPECT_TRUE(becomesOpen());
        EXPECT_TRUE(terminalHasKeyboard());
        // On the panel, beside the notch: a movement that comes after a rest.
        display->movePointer(shell().bottomLeft() + QPoint(40, -20));
        display->movePointer(elsewhere);
        EXPECT_TRUE(becomesClosed());
    }
}

TEST_F(NotchScreenTest, LetsClicksThroughWhereThereIsNothingToSee) {
    display->click(closed.bottomLeft() + QPoint(0, 0));
    display->click(closed.topLeft() + QPoint(-40, 10));
    display->click({640, 200});
    EXPECT_TRUE(waitUntil([this] { return clicksOnTerminal() == 3; }));

    display->click(onNotch);
    EXPECT_TRUE(becomesOpen());
    display->click(shell().center());
    display->click(shell().bottomLeft() + QPoint(3, 20));
    EXPECT_TRUE(waitUntil([this] { return clicksOnTerminal() == 4; }));
}

} // namespace
} // namespace morvane
