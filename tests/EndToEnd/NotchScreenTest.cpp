#include "EndToEnd/ProgramHome.h"
#include "EndToEnd/VirtualDisplay.h"
#include "Support/WaitUntil.h"

#include <QFile>
#include <QRect>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace morvane {
namespace {

constexpr const char *terminalTitle = "terminal";
constexpr QPoint onNotch(640, 5);
constexpr QPoint elsewhere(640, 700);

// What a terminal tells the program in it of a button that was pressed.
constexpr const char *leftPress = "\x1b[M ";

/// The program on a display that is said to have a notch, above a terminal that fills the screen
/// and notes the clicks that reach it.
class NotchScreenTest : public testing::Test {
protected:
    void SetUp() override {
        const QStringList missing = VirtualDisplay::missingPrograms();
        if (!missing.isEmpty()) {
            GTEST_SKIP() << "These programs are needed and not installed: "
                         << missing.join(QStringLiteral(", ")).toStdString();
        }
        home.setVariable("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        display = std::make_unique<VirtualDisplay>(home.environment());
        ASSERT_TRUE(display->isUp());
        display->movePointer(elsewhere);
        terminal = start({"xterm", "-title", QLatin1String(terminalTitle), "-e", "sh", "-c",
                          "stty raw -echo; printf '\\033[?1000h'; exec cat >\"$0\"",
                          home.path("received")});
        ASSERT_TRUE(waitUntil([this] { return QFile::exists(home.path("received")); }));
        program = start({NOTCHED_MORVANE, "200x32"});
        ASSERT_TRUE(waitUntil([this] { return shell() == closed; }));
    }

    std::unique_ptr<ChildProcess> start(const QStringList &command,
                                        const QByteArray &input = {}) const {
        return std::make_unique<ChildProcess>(command, display->environment(), input);
    }

    std::optional<QRect> find(const QString &role, const QString &name) const {
        const auto finder = start({FIND_ACCESSIBLE, "--extents", role, name});
        if (finder->wait() != 0) {
            return std::nullopt;
        }
        const QList<QByteArray> numbers = finder->output().simplified().split(' ');
        return QRect(numbers.value(0).toInt(), numbers.value(1).toInt(), numbers.value(2).toInt(),
                     numbers.value(3).toInt());
    }

    /// The black shell, closed or open.
    QRect shell() const { return find("filler", "Morvane").value_or(QRect()); }

    bool becomesOpen() const {
        return waitUntil([this] { return shell().width() >= 550; });
    }
    bool becomesClosed() const {
        return waitUntil([this] { return shell() == closed; });
    }
    bool terminalHasKeyboard() const { return display->focusedTitle() == terminalTitle; }

    qsizetype clicksOnTerminal() const {
        QFile file(home.path("received"));
        file.open(QIODevice::ReadOnly);
        return file.readAll().count(leftPress);
    }

    const QRect closed{444, 0, 392, 32};
    ProgramHome home{{{"showWhenIdle", true}}};
    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<ChildProcess> terminal;
    std::unique_ptr<ChildProcess> program;
};

TEST_F(NotchScreenTest, OpensUnderTheRestingPointerAgainAndAgain) {
    ASSERT_TRUE(waitUntil([this] { return terminalHasKeyboard(); }));
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
