#include "Platform/Linux/X11/X11HotKeys.h"
#include "Platform/X11/OnX11.h"

#include <QCoreApplication>

namespace morvane {
namespace {

using State = HotKeys::State;

const HotKey panelKey{.keyCode = 34, .symbol = "G", .super = true, .shift = true};
const HotKey escape{.keyCode = 1, .symbol = "Esc"};

// By its key code, since a layout need not have this letter.
constexpr const char *pressPanelKey = "super+shift+42";

/// Grabbed keys above a terminal that has the keyboard.
class HotKeysTest : public OnX11<QCoreApplication> {
protected:
    void startAll() override {
        ASSERT_NO_FATAL_FAILURE(startTerminal());
        ASSERT_NO_FATAL_FAILURE(startApplication());
        hotKeys = std::make_unique<X11HotKeys>(*x11);
        QObject::connect(hotKeys.get(), &HotKeys::pressed,
                         [this](std::uint32_t id) { presses.append(id); });
    }

    /// Whether a press comes in, once, and doesn't reach the terminal.
    bool works(const char *key, std::uint32_t id) {
        presses.clear();
        const QByteArray before = received();
        display->press(key);
        // Once the x that is typed after the key has arrived, the key would have arrived too.
        display->press("x");
        return becomesTrue([&] { return received() == before + typedX && !presses.isEmpty(); }) &&
               presses == QList{id};
    }

    QList<std::uint32_t> presses;
    std::unique_ptr<X11HotKeys> hotKeys;
    QByteArray typedX = "x";
};

TEST_F(HotKeysTest, WorkWhateverTheLocksAndTheLayout) {
    const std::uint32_t panel = hotKeys->registerKey(panelKey, {});
    EXPECT_EQ(hotKeys->state(panel), State::works);
    EXPECT_TRUE(works(pressPanelKey, panel));
    for (const auto &[lock, typed] :
         {std::pair("Num_Lock", "x"), std::pair("Caps_Lock", "X"), std::pair("Num_Lock", "X")}) {
        display->press(lock);
        typedX = typed;
        EXPECT_TRUE(works(pressPanelKey, panel)) << lock << ' ' << typed;
    }
    display->press("Caps_Lock");
    typedX = "x";
    ASSERT_TRUE(display->run({"setxkbmap", "ru"}));
    // Only the press is checked: to type the x, which this layout lacks, would change the layout.
    presses.clear();
    display->press(pressPanelKey);
    EXPECT_TRUE(becomesTrue([&] { return presses == QList{panel}; }));
}

TEST_F(HotKeysTest, FollowTheirModifiersWhenTheKeyboardChanges) {
    const std::uint32_t lent = hotKeys->registerKey({.keyCode = 35, .super = true}, {});
    QObject::connect(hotKeys.get(), &HotKeys::stateChanged,
                     [&](std::uint32_t) { hotKeys->unregisterKey(lent); });
    const std::uint32_t panel = hotKeys->registerKey(panelKey, {});
    ASSERT_TRUE(display->run({"xmodmap", "-e", "clear mod4"}));
    EXPECT_TRUE(becomesTrue([&] { return hotKeys->state(panel) == State::unavailable; }));
    ASSERT_TRUE(display->run({"xmodmap", "-e", "clear mod3", "-e", "add mod3 = Super_L"}));
    EXPECT_TRUE(becomesTrue([&] { return hotKeys->state(panel) == State::works; }));
    EXPECT_TRUE(works(pressPanelKey, panel));
}

TEST_F(HotKeysTest, AreLeftToTheProgramThatHasThemAndGivenBack) {
    const auto other = X11Connection::open();
    auto others = std::make_unique<X11HotKeys>(*other);
    others->registerKey(panelKey, {});
    const std::uint32_t panel = hotKeys->registerKey(panelKey, {});
    EXPECT_EQ(hotKeys->state(panel), State::taken);
    others.reset();
    QList<std::uint32_t> changes;
    QObject::connect(hotKeys.get(), &HotKeys::stateChanged,
                     [&](std::uint32_t id) { changes.append(id); });
    EXPECT_TRUE(becomesTrue([&] {
        hotKeys->retry();
        return hotKeys->state(panel) == State::works;
    }));
    EXPECT_EQ(changes, QList{panel});
    EXPECT_TRUE(works(pressPanelKey, panel));

    const std::uint32_t held = hotKeys->registerKey(escape, {});
    EXPECT_TRUE(works("Escape", held));
    hotKeys->unregisterKey(held);
    display->press("Num_Lock");
    display->press("Escape");
    EXPECT_TRUE(becomesTrue([this] { return received().endsWith("\x1b"); }));
    EXPECT_EQ(presses.size(), 1);
}

} // namespace
} // namespace morvane
