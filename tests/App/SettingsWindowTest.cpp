#include "App/WindowsFixture.h"
#include "Core/Settings/PanelKey.h"
#include "Presentation/Windows/KeyField.h"
#include "Presentation/Windows/ToggleRow.h"

#include <QComboBox>
#include <QMessageBox>
#include <QSpinBox>
#include <QStyleOptionSpinBox>
#include <QTest>
#include <QWheelEvent>

namespace morvane {
namespace {

class SettingsWindowTest : public WindowsFixture {
protected:
    void openSettings() {
        settings.setHasCompletedFirstRun(true);
        open("Morvane Settings");
    }

    ToggleRow *toggle(const char *text) { return shownControl<ToggleRow>(*window, text); }

    /// A key press with the scan code of the display server: the key's place plus 8.
    void press(int key, Qt::KeyboardModifiers held, quint32 place) {
        QWidget *target = window->focusWidget();
        QKeyEvent shortcut(QEvent::ShortcutOverride, key, held, place + 8, 0, 0);
        shortcut.ignore();
        QCoreApplication::sendEvent(target, &shortcut);
        EXPECT_TRUE(shortcut.isAccepted());
        send(*target, QKeyEvent(QEvent::KeyPress, key, held, place + 8, 0, 0));
    }

    void release(int key, quint32 place) {
        send(*window->focusWidget(),
             QKeyEvent(QEvent::KeyRelease, key, Qt::NoModifier, place + 8, 0, 0));
    }

    QString keyName() const { return window->findChild<KeyField *>()->accessibleName(); }

    static QMessageBox *alert() {
        return qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    }
};

TEST_F(SettingsWindowTest, ConnectsRepairsAndDisconnectsAnAgent) {
    home.write(".claude/settings.json", R"({"model": "opus"})");
    home.makeReadOnly(".claude/settings.json");
    openSettings();
    EXPECT_FALSE(toggle("Answer permission prompts from the notch")->isEnabled());

    button("Connect Claude Code")->click();
    EXPECT_TRUE(reads("Claude Code connect failed: "));

    home.makeReadOnly(".claude/settings.json", false);
    // A double click counts as one press.
    QPushButton *connecting = button("Connect Claude Code");
    QTest::mouseClick(connecting, Qt::LeftButton);
    QTest::mouseDClick(connecting, Qt::LeftButton);
    QTest::mouseRelease(connecting, Qt::LeftButton);
    EXPECT_FALSE(reads("connect failed: "));
    EXPECT_EQ(button("Connect Claude Code"), nullptr);
    EXPECT_TRUE(toggle("Answer permission prompts from the notch")->isEnabled());

    // Somebody deletes the scripts while the window is inactive.
    QFile::remove(home.path(".morvane/hook.sh"));
    QFile::remove(home.path(".morvane/statusline.sh"));
    comeBack();
    EXPECT_TRUE(reads("forwarder script missing; statusline script missing"));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    button("Repair Claude Code")->setFocus();
    QTest::keyClick(window->windowHandle(), Qt::Key_Space);
    EXPECT_EQ(button("Repair Claude Code"), nullptr);
    // One press too many does nothing, and Tab goes on from the same place.
    QTest::keyClick(window->windowHandle(), Qt::Key_Space);
    EXPECT_EQ(qobject_cast<QAbstractButton *>(window->focusWidget()), nullptr);
    QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
    EXPECT_EQ(window->focusWidget(), button("Disconnect Claude Code"));

    const QByteArray connected = read(".claude/settings.json");
    home.write(".claude/settings.json", R"({"disableAllHooks":true,)" + connected.mid(1));
    comeBack();
    EXPECT_TRUE(reads("All hooks of Claude Code are switched off in its settings"));
    EXPECT_EQ(button("Repair Claude Code"), nullptr);
    home.writeEarlier(".claude/settings.json", connected + ',');
    comeBack();
    EXPECT_TRUE(reads("settings.json could not be understood"));
    EXPECT_NE(button("Connect Claude Code"), nullptr);
    home.write(".claude/settings.json", connected);
    comeBack();

    button("Disconnect Claude Code")->click();
    EXPECT_EQ(read(".claude/settings.json"), R"({"model": "opus"})");
}

TEST_F(SettingsWindowTest, LeavesTheKeysAtAnAgentWhenAnotherComesOrGoes) {
    home.write(".claude/settings.json", "{}");
    home.write(".gemini/settings.json", "{}");
    openSettings();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    QPushButton *const connecting = button("Connect Gemini CLI");
    connecting->setFocus();
    home.write(".codex/config.toml");
    comeBack();
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(connecting->hasFocus());
    EXPECT_EQ(tabOrder().mid(0, 3),
              (QStringList{"Connect Claude Code", "Connect Codex", "Connect Gemini CLI"}));
    QDir(home.path(".codex")).removeRecursively();
    comeBack();
    EXPECT_TRUE(connecting->hasFocus());
    // When the agent itself goes, no other button gets the focus.
    QDir(home.path(".gemini")).removeRecursively();
    comeBack();
    EXPECT_EQ(tabOrder().first(), "Connect Claude Code");
    EXPECT_EQ(qobject_cast<QAbstractButton *>(window->focusWidget()), nullptr);
}

TEST_F(SettingsWindowTest, ChangesSettingsAndFollowsThem) {
    openSettings();
    EXPECT_EQ(toggle("…when a session finishes"), nullptr);
    toggle("Play Morvane sound")->click();
    EXPECT_TRUE(settings.soundEnabled());
    toggle("…when a session finishes")->click();
    EXPECT_EQ(settings.soundOnDone(), toggle("…when a session finishes")->isChecked());

    settings.setShowWhenIdle(true);
    EXPECT_TRUE(toggle("Keep capsule always visible")->isChecked());
    EXPECT_FALSE(reads("Morvane is still running."));
    toggle("Show icon in the tray")->click();
    EXPECT_TRUE(reads("Morvane is still running."));
    toggle("Launch at login")->click();
    EXPECT_TRUE(platform.loginItem->isEnabled());

    // Once turned off, usage is no longer polled, and its thresholds are gone from the form.
    EXPECT_TRUE(reads("85% · 90% · 95%"));
    toggle("Show Claude Code and Codex usage limits")->click();
    EXPECT_FALSE(settings.usageEnabled());
    EXPECT_FALSE(reads("85% · 90% · 95%"));

    // A wheel that turns over a choice scrolls the form.
    const auto pickers = window->findChildren<QComboBox *>();
    ASSERT_FALSE(pickers.isEmpty());
    send(*pickers.first(), QWheelEvent({5, 5}, {5, 5}, {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                                       Qt::NoScrollPhase, false));
    EXPECT_EQ(settings.displayMode(), DisplayTargetMode::all);
    emit pickers.first()->activated(2);
    EXPECT_EQ(settings.displayMode(), DisplayTargetMode::externalOnly);
}

TEST_F(SettingsWindowTest, TakesANumberOnceItHasBeenTypedAndLetsNothingTakeItAwayMeanwhile) {
    settings.setAutoClearMinutes(500);
    openSettings();
    auto *minutes = window->findChild<QSpinBox *>();
    EXPECT_EQ(settings.autoClearMinutes(), 500);
    EXPECT_EQ(minutes->value(), 500);
    minutes->setFocus();
    minutes->selectAll();
    QTest::keyClicks(minutes, "12");
    settings.setShowWhenIdle(false);
    EXPECT_EQ(minutes->cleanText(), "12");
    EXPECT_EQ(settings.autoClearMinutes(), 500);
    QTest::keyClick(minutes, Qt::Key_Return);
    EXPECT_EQ(settings.autoClearMinutes(), 12);

    // An arrow stays down while it is held, so that it goes on.
    QStyleOptionSpinBox spinBox;
    spinBox.initFrom(minutes);
    spinBox.subControls = QStyle::SC_All;
    const QRect arrow =
        minutes->style()->subControlRect(QStyle::CC_SpinBox, &spinBox, QStyle::SC_SpinBoxUp);
    const QImage up = minutes->grab(arrow).toImage();
    QTest::mousePress(minutes, Qt::LeftButton, Qt::NoModifier, arrow.center());
    EXPECT_EQ(settings.autoClearMinutes(), 13);
    EXPECT_NE(minutes->grab(arrow).toImage(), up);
    QTest::mouseRelease(minutes, Qt::LeftButton, Qt::NoModifier, arrow.center());
    EXPECT_EQ(minutes->grab(arrow).toImage(), up);

    // A closed window isn't kept up to date, but it is as soon as it opens again.
    window->close();
    settings.setAutoClearMinutes(5);
    EXPECT_EQ(minutes->value(), 13);
    delegate.applicationShouldHandleReopen();
    EXPECT_EQ(minutes->value(), 5);
}

TEST_F(SettingsWindowTest, NamesEveryControlOfTheSettings) {
    home.write(".claude/settings.json", R"({"statusLine": {"command": "mine"}})");
    home.write(".codex/config.toml");
    settings.setSoundEnabled(true);
    settings.setShowMenuBarIcon(false);
    settings.setPanelKey({.keyCode = 37, .symbol = "K", .super = true});
    openSettings();
    button("Connect Claude Code")->click();
    button("Connect Codex")->click();
    EXPECT_TRUE(reads("Morvane polls every few minutes instead."));
    QFile::remove(home.path(".morvane/hook.sh"));
    delegate.applicationShouldHandleReopen();
    comeBack();
    ASSERT_NE(button("Repair Claude Code"), nullptr);
    EXPECT_EQ(tabOrder().mid(0, 5),
              (QStringList{"Disconnect Claude Code", "Repair Claude Code", "Disconnect Codex",
                           "Repair Codex", "Hide over fullscreen apps"}));
    EXPECT_EQ(tabOrder().last(), "Remove Morvane");
    const AccessibleControls controls(*window);
    EXPECT_EQ(controls.faults(), QStringList());
    EXPECT_GE(controls.count(), 25);
    button("Remove Morvane")->click();
    EXPECT_EQ(AccessibleControls(*alert()).faults(), QStringList());
}

TEST_F(SettingsWindowTest, TakesTheKeyThatIsPressedForThePanel) {
    constexpr quint32 kPlace = 37;
    openSettings();
    auto *field = window->findChild<KeyField *>();
    EXPECT_EQ(keyName(), "Key that opens the panel: Super+Shift+G");
    field->setFocus();
    field->click();
    EXPECT_EQ(keyName(), "Key that opens the panel: press it");
    press(Qt::Key_Meta, Qt::NoModifier, 125);
    press(Qt::Key_K, Qt::ShiftModifier, kPlace);
    EXPECT_TRUE(reads("Hold Super, Ctrl or Alt together with the key."));
    press(Qt::Key_Tab, Qt::NoModifier, 15);
    EXPECT_EQ(window->focusWidget(), field);
    // On another layout the key of that place has another symbol.
    press(Qt::Key_Ampersand, Qt::ControlModifier, 2);
    EXPECT_TRUE(reads("The open panel needs Ctrl+1–Ctrl+5 for its answers."));
    press(Qt::Key_Q, Qt::MetaModifier, 0);
    EXPECT_TRUE(reads("That key can't be used."));
    EXPECT_EQ(settings.panelKey(), PanelKey::usual());
    press(Qt::Key_Q, Qt::ControlModifier, 16);
    EXPECT_EQ(keyName(), "Key that opens the panel: Ctrl+Q");
    EXPECT_FALSE(reads("That key can't be used."));

    field->click();
    press(Qt::Key_K, Qt::MetaModifier, kPlace);
    EXPECT_EQ(settings.panelKey(), (HotKey{.keyCode = kPlace, .symbol = "K", .super = true}));
    EXPECT_FALSE(hotKeys.held().contains(u'G'));
    toggle("Show icon in the tray")->click();
    EXPECT_TRUE(reads("Open the panel with Super+K, or hover the capsule."));
    hotKeys.setTaken({"K"});
    EXPECT_TRUE(reads("Super+K is taken by another program"));
    button("Use Super+Shift+G")->click();
    EXPECT_FALSE(reads("is taken by another program"));
    EXPECT_FALSE(hotKeys.held().contains(u'K'));
    EXPECT_EQ(settings.panelKey(), PanelKey::usual());
}

TEST_F(SettingsWindowTest, LeavesTheKeyAsItWasUnlessOneIsChosen) {
    openSettings();
    auto *field = window->findChild<KeyField *>();
    const auto isListening = [this] { return keyName().endsWith("press it"); };
    field->setFocus();
    field->click();
    press(Qt::Key_Escape, Qt::NoModifier, 1);
    EXPECT_TRUE(isListening());
    release(Qt::Key_Escape, 1);
    EXPECT_FALSE(isListening());
    EXPECT_TRUE(window->isVisible());
    field->click();
    field->click();
    EXPECT_FALSE(isListening());
    field->click();
    send(*field, QFocusEvent(QEvent::FocusOut));
    EXPECT_FALSE(isListening());
    field->click();
    window->close();
    EXPECT_FALSE(isListening());
    EXPECT_EQ(settings.panelKey(), PanelKey::usual());
}

TEST_F(SettingsWindowTest, ClosesByAKeyThatIsLetGoInItWhateverLetterThatIsByThen) {
    openSettings();
    window->findChild<KeyField *>()->setFocus();
    const auto pressInWindow = [this](int key, Qt::KeyboardModifiers held, quint32 place) {
        send(*window, QKeyEvent(QEvent::KeyPress, key, held, place + 8, 0, 0));
    };
    pressInWindow(Qt::Key_Escape, Qt::NoModifier, 1);
    send(*window, QEvent(QEvent::WindowDeactivate));
    release(Qt::Key_Escape, 1);
    EXPECT_TRUE(window->isVisible());
    pressInWindow(Qt::Key_W, Qt::ControlModifier, 17);
    EXPECT_TRUE(window->isVisible());
    release(0x0426, 17); // without Ctrl, on a Cyrillic layout
    EXPECT_FALSE(window->isVisible());
}

TEST_F(SettingsWindowTest, LeavesTheKeyToADesktopThatGivesIt) {
    hotKeys.desktopGivesThem = true;
    hotKeys.setUsual(HotKeys::State::pending);
    settings.setShowMenuBarIcon(false);
    openSettings();
    EXPECT_EQ(window->findChild<KeyField *>(), nullptr);
    EXPECT_TRUE(reads("set by the desktop"));
    EXPECT_TRUE(reads("Hover the capsule to open the panel."));
    hotKeys.setUsual(HotKeys::State::works);
    EXPECT_TRUE(reads("Open the panel with the key that the desktop has for it, or hover"));
    hotKeys.setUsual(HotKeys::State::unavailable);
    EXPECT_TRUE(reads("Super+Shift+G doesn't work on this desktop"));
}

TEST_F(SettingsWindowTest, SaysThatABuildWithoutAddressesSendsNothing) {
    openSettings();
    EXPECT_TRUE(reads("This build has no update signing key"));
    EXPECT_TRUE(reads("so nothing is sent either way"));
    EXPECT_FALSE(button("Check now")->isEnabled());
    toggle("Count this install")->click();
    EXPECT_FALSE(settings.installPingEnabled());
    toggle("Check for updates automatically")->click();
    EXPECT_FALSE(toggle("Check for updates automatically")->isChecked());
    EXPECT_TRUE(isStored("SUEnableAutomaticChecks"));
}

TEST_F(SettingsWindowTest, SaysWhoseNotificationsItSilences) {
    openSettings();
    EXPECT_TRUE(reads("None of the agents on this computer has a notification switch"));
    EXPECT_EQ(toggle("Suppress agents' own notifications"), nullptr);
    home.write(".claude/settings.json", "{}");
    delegate.applicationShouldHandleReopen();
    comeBack();
    EXPECT_TRUE(reads("Silences the desktop notifications Claude Code sends so Morvane"));
    toggle("Suppress agents' own notifications")->click();
    EXPECT_TRUE(toggle("Suppress agents' own notifications")->isChecked());
    EXPECT_NE(read(".claude/settings.json"), "{}");
}

TEST_F(SettingsWindowTest, RemovesEverythingOnlyWhenTold) {
    home.write(".claude/settings.json", "{}");
    openSettings();
    button("Connect Claude Code")->click();
    button("Remove Morvane")->click();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->text(), "Remove Morvane's hooks and data?");
    // A person who presses Return without reading must not remove anything.
    EXPECT_EQ(alert()->defaultButton(), alert()->button(QMessageBox::Cancel));
    alert()->button(QMessageBox::Cancel)->click();
    EXPECT_TRUE(QFile::exists(home.path(".morvane")));
    EXPECT_NE(read(".claude/settings.json"), "{}");

    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    button("Remove Morvane")->click();
    shownControl<QPushButton>(*alert(), "Remove and Quit")->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->text(), "Morvane removed");
    EXPECT_TRUE(alert()->informativeText().startsWith(
        "Removed:\n• Claude Code hooks\n• ~/.morvane\n• preferences and session history\n\n"))
        << qPrintable(alert()->informativeText());
    EXPECT_FALSE(QFile::exists(home.path(".morvane")));
    EXPECT_EQ(read(".claude/settings.json"), "{}");
}

} // namespace
} // namespace morvane
