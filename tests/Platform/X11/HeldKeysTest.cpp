#include "Platform/Linux/X11/X11HeldKeys.h"
#include "Platform/X11/OverlayFixture.h"

#include <QKeyEvent>
#include <QMenu>
#include <QWindow>

namespace morvane {
namespace {

/// Counts what the server tells of a key, and what the panel's window hears of it.
class HeldKeysTest : public OverlayFixture, private QAbstractNativeEventFilter {
protected:
    void startAll() override {
        ASSERT_NO_FATAL_FAILURE(OverlayFixture::startAll());
        ASSERT_TRUE(display->run({"xset", "r", "rate", "100", "250"}));
        heldKeys = std::make_unique<X11HeldKeys>();
        application->installNativeEventFilter(this);
        panel->windowHandle()->installEventFilter(&heard);
    }

    bool hold(const char *key) { return display->run({"xdotool", "keydown", key}); }
    bool letGo(const char *key) { return display->run({"xdotool", "keyup", key}); }

    /// Whether the server goes on reporting a key that is held.
    bool isTold() {
        told = 0;
        return becomesTrue([this] { return told >= 3; });
    }

    /// Types a letter; whether it reaches the field, after all earlier events.
    bool reaches(const char *letter) {
        type(letter);
        return becomesTrue([&] { return field->text().endsWith(QLatin1String(letter)); });
    }

    struct : QObject {
        bool eventFilter(QObject *, QEvent *event) override {
            const auto *key = dynamic_cast<QKeyEvent *>(event);
            const bool isReturn = key != nullptr && key->key() == Qt::Key_Return;
            presses += isReturn && key->type() == QEvent::KeyPress ? 1 : 0;
            releases += isReturn && key->type() == QEvent::KeyRelease ? 1 : 0;
            return false;
        }
        int presses = 0;
        int releases = 0;
    } heard; ///< of the key Return

private:
    bool nativeEventFilter(const QByteArray &, void *message, qintptr *) override {
        const auto &key = *static_cast<const xcb_key_press_event_t *>(message);
        told += key.response_type == XCB_KEY_PRESS ? 1 : 0;
        return false;
    }

    int told = 0;
    std::unique_ptr<X11HeldKeys> heldKeys;
};

TEST_F(HeldKeysTest, AKeyThatIsHeldIsNotLetGoMeanwhile) {
    ASSERT_TRUE(takeKeyboard());
    hold("Return");
    EXPECT_TRUE(becomesTrue([this] { return heard.presses >= 3; }));
    EXPECT_EQ(heard.releases, 0);
    letGo("Return");
    EXPECT_TRUE(becomesTrue([this] { return heard.releases > 0; }));

    // With Alt a key is the mnemonic of a button, which must act only once.
    heard.presses = 0;
    hold("alt");
    hold("Return");
    EXPECT_TRUE(isTold());
    EXPECT_EQ(heard.presses, 1);
    letGo("Return");
    letGo("alt");
}

TEST_F(HeldKeysTest, AKeyThatWentDownInAnotherWindowBeginsNothing) {
    hold("Return");
    ASSERT_TRUE(becomesTrue([this] { return !received().isEmpty(); }));
    ASSERT_TRUE(takeKeyboard());
    EXPECT_TRUE(isTold());
    letGo("Return");
    ASSERT_TRUE(reaches("a"));
    EXPECT_EQ(heard.presses, 0);

    // A menu acts on the press.
    QMenu menu;
    const QAction *paste = menu.addAction("Paste");
    bool isChosen = false;
    QObject::connect(paste, &QAction::triggered, [&] { isChosen = true; });
    menu.popup(field->mapToGlobal(QPoint()));
    ASSERT_TRUE(becomesTrue([&] { return menu.isVisible(); }));
    display->press("Down");
    hold("Return");
    EXPECT_TRUE(becomesTrue([&] { return isChosen; }));
    EXPECT_TRUE(isTold());
    letGo("Return");
    EXPECT_TRUE(reaches("b"));
    EXPECT_EQ(heard.presses, 0);
}
} // namespace
} // namespace morvane
