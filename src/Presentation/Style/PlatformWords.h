#pragma once

#include "Platform/HotKeys.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QString>

namespace morvane {

/// What is called otherwise on a Linux desktop than where the texts were first written.
struct PlatformWords {
    Q_DECLARE_TR_FUNCTIONS(PlatformWords)

public:
    /// The names of a key and of what is held down with it: "Super+Shift+G".
    static QString hotKey(const HotKey &key);

    /// The same for a menu.
    static QKeySequence keySequence(const HotKey &key);

    /// Why a key doesn't work; empty where it does, or may yet.
    static QString hotKeyProblem(const HotKey &key, HotKeys::State state);

    /// What to press for the panel, as a sentence has it; empty where no key works. A desktop that
    /// gives keys away may have given another one.
    static QString panelKey(const HotKey &key, HotKeys::State state, bool isDesktops);

    /// The keys of one of the digit shortcuts: "⌘1" elsewhere.
    static QString digitShortcut(int digit);

    /// The keys of the first and the last digit that jump somewhere: "⌘1–⌘5" elsewhere.
    static QString digitShortcuts(int first, int last);

    // The windows' sentences that name a place of the desktop.

    static QString everythingStaysHere();
    /// Where a newcomer finds Morvane: beside the clock elsewhere.
    static QString whereToLook(bool hasTrayIcon);
    /// `panelKey` may be empty.
    static QString openThePanel(const QString &panelKey, bool hasTrayIcon);
    static QString noNotificationSwitch();
    static QString windowFocusNeeds();
    static QString windowFocusFooter();
    static QString showIcon();
    static QString iconIsHidden(const QString &panelKey);
    static QString removeTheProgram();
    static QString removeTheProgramToFinish();
    static QString acknowledgementsAreMissing();
};

} // namespace morvane
