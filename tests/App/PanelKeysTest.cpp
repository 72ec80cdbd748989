#include "App/PanelKeys.h"

#include "Core/Settings/PanelKey.h"
#include "Presentation/Overlay/InlineEditing.h"
#include "Support/FakeHotKeys.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

using State = HotKeys::State;

class PanelKeysTest : public testing::Test {
protected:
    /// What a press does.
    QString press(const QString &symbol) {
        hotKeys.press(symbol);
        EXPECT_EQ(done, "");
        scheduler.runPosted();
        return std::exchange(done, {});
    }

    FakeHotKeys hotKeys;
    ManualScheduler scheduler;
    InlineEditing editing;
    QString done;
    std::unique_ptr<PanelKeys> keys = std::make_unique<PanelKeys>(
        hotKeys, scheduler, editing,
        PanelKeys::Actions{[this] { done += "present"; },
                           [this] {
                               keys->panelExpanded(false);
                               done += "collapse";
                           },
                           [this](int index) { done += "digit" + QString::number(index); }});
    const DigitShortcuts &shortcuts = keys->digitShortcuts();
};

TEST_F(PanelKeysTest, HoldsEscAndTheDigitsOnlyWhileAPanelIsOpen) {
    EXPECT_EQ(hotKeys.held(), "");
    keys->start(PanelKey::usual());
    EXPECT_EQ(hotKeys.held(), "G");
    EXPECT_EQ(press("G"), "present");
    keys->panelExpanded(true);
    EXPECT_EQ(hotKeys.held(), "G12345Esc");
    EXPECT_EQ(press("1") + press("5"), "digit0digit4");
    keys->panelExpanded(true);
    keys->panelExpanded(false);
    EXPECT_EQ(hotKeys.held(), "G12345Esc");
    EXPECT_EQ(press("Esc"), "collapse");
    EXPECT_EQ(hotKeys.held(), "G");
    // A panel closes whose opening was never told.
    keys->panelExpanded(false);
    keys->panelExpanded(true);
    EXPECT_EQ(hotKeys.held(), "G12345Esc");
    keys.reset();
    EXPECT_EQ(hotKeys.held(), "");
}

TEST_F(PanelKeysTest, LeavesEscToAFieldThatSomebodyTypesIn) {
    keys->start(PanelKey::usual());
    keys->panelExpanded(true);
    editing.begin(scheduler.now());
    EXPECT_EQ(hotKeys.held(), "G12345");
    editing.begin(scheduler.now());
    editing.end();
    EXPECT_EQ(hotKeys.held(), "G12345");
    editing.end();
    EXPECT_EQ(hotKeys.held(), "G12345Esc");
    // A forgotten field gives Esc back to the panel until somebody comes back to the field.
    editing.begin(scheduler.now());
    scheduler.advance(Seconds(121));
    EXPECT_EQ(hotKeys.held(), "G12345Esc");
    editing.renew(scheduler.now());
    EXPECT_EQ(hotKeys.held(), "G12345");
    keys->panelExpanded(false);
    editing.end();
    EXPECT_EQ(hotKeys.held(), "G");
}

TEST_F(PanelKeysTest, DropsAPressWhoseKeyHasBeenGivenBackMeanwhile) {
    keys->panelExpanded(true);
    hotKeys.press("1");
    keys->panelExpanded(false);
    keys->panelExpanded(true);
    scheduler.runPosted();
    EXPECT_EQ(done, "");
    hotKeys.press("1");
    keys.reset();
    scheduler.runPosted();
    EXPECT_EQ(done, "");
}

TEST_F(PanelKeysTest, GivesTheOldKeyBackForAnother) {
    HotKey other{.keyCode = 37, .symbol = "K", .super = true};
    keys->setPanelKey(other);
    EXPECT_EQ(hotKeys.held(), "");
    keys->start(PanelKey::usual());
    keys->panelExpanded(true);
    hotKeys.press("G");
    keys->setPanelKey(other);
    // A press of the old key does not count for the new one.
    scheduler.runPosted();
    EXPECT_EQ(done, "");
    EXPECT_EQ(hotKeys.held(), "12345EscK");
    EXPECT_EQ(press("G"), "");
    EXPECT_EQ(press("K"), "present");
    const std::uint32_t registrations = hotKeys.registrations();
    keys->setPanelKey(other);
    EXPECT_EQ(hotKeys.registrations(), registrations);
}

TEST_F(PanelKeysTest, TellsWhichKeysAreSomebodyElses) {
    keys->start(PanelKey::usual());
    EXPECT_EQ(keys->panelKeyState(), State::works);
    hotKeys.setTaken({"G"});
    EXPECT_EQ(keys->panelKeyState(), State::taken);

    keys->panelExpanded(true);
    EXPECT_TRUE(shortcuts.areWorking());
    hotKeys.setTaken({"3"});
    EXPECT_FALSE(shortcuts.areWorking());
    // Digits that no row shows are left to the program in front.
    EXPECT_EQ(hotKeys.held(), "GEsc");
    keys->retry();
    EXPECT_EQ(hotKeys.held(), "GEsc");
    hotKeys.setTaken({});
    keys->retry();
    EXPECT_EQ(hotKeys.held(), "GEsc12345");
    EXPECT_TRUE(shortcuts.areWorking());
    keys->panelExpanded(false);
    EXPECT_FALSE(shortcuts.areWorking());
}

} // namespace
} // namespace morvane
