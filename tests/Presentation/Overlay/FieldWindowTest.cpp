#include "Presentation/Overlay/FieldWindow.h"

#include "Support/Printing.h"

#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>

namespace morvane {
namespace {

class FieldWindowTest : public testing::Test {
protected:
    FieldWindowTest() {
        window->commit = [this](const QString &text) { finish(text); };
        window->cancel = [this] { finish("cancelled"); };
        window->openAt({100, 100, 200, 24});
    }

    void finish(const QString &answer) {
        answers.append(answer);
        window.reset();
    }

    QLineEdit &field() { return *window->findChild<QLineEdit *>(); }

    QStringList answers;
    std::unique_ptr<FieldWindow> window =
        std::make_unique<FieldWindow>("Rename session", "old", "session");
};

TEST_F(FieldWindowTest, ReturnCommitsWhatReplacedTheSelectedText) {
    QTest::keyClicks(&field(), "new");
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_FALSE(window->isVisible());
    // What comes too late changes nothing.
    window->close();
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, QStringList({"new"}));
}

TEST_F(FieldWindowTest, EscapeAndClosingGiveUp) {
    QTest::keyClicks(&field(), "new");
    QTest::keyClick(&field(), Qt::Key_Escape);
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, QStringList({"cancelled"}));

    window = std::make_unique<FieldWindow>("Reply", "", "");
    window->cancel = [this] { finish("closed"); };
    window->openAt({100, 100, 200, 24});
    window->close();
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, QStringList({"cancelled", "closed"}));
}

} // namespace
} // namespace morvane
