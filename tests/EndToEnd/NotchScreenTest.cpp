#include "EndToEnd/ProgramOnScreen.h"

namespace morvane {
namespace {

/// The program on a display that is said to have a notch.
class NotchScreenTest : public ProgramOnScreen {
protected:
    void startAll() override {
        display->movePointer(elsewhere);
        ASSERT_NO_FATAL_FAILURE(startTerminal());
        program = start({NOTCHED_MORVANE, "200x32"});
        ASSERT_TRUE(becomesClosed());
    }

    bool becomesClosed() const {
        return waitUntil([this] { return tab() == QRect(444, 0, 392, 32); });
    }

    const QPoint elsewhere{640, 700};
};

TEST_F(NotchScreenTest, OpensUnderTheRestingPointerAgainAndAgain) {
    for (int round = 0; round < 2; ++round) {
        display->movePointer({640, 5});
        EXPECT_TRUE(waitUntil([this] { return tab().width() >= 550; }));
        EXPECT_TRUE(terminalHasKeyboard());
        // On the panel, beside the notch: a movement that comes after a rest.
        display->movePointer(tab().bottomLeft() + QPoint(40, -20));
        display->movePointer(elsewhere);
        EXPECT_TRUE(becomesClosed());
    }
}

} // namespace
} // namespace morvane
