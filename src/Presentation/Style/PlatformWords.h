#pragma once

#include "Platform/HotKeys.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QString>

namespace morvane {

/// Wording that differs on a Linux desktop from the platform the texts were first written for.
struct PlatformWords {
    Q_DECLARE_TR_FUNCTIONS(PlatformWords)

public:
    /// The key with its modifiers, for a person: "Super+Shift+G".
    static QString hotKey(const HotKey &key);

    /// The same for a menu.
    static QKeySequence keySequence(const HotKey &key);

    /// Why a key doesn't work; empty while it works or the desktop hasn't answered yet.
    static QString hotKeyProblem(const HotKey &key, HotKeys::State state);

    /// The key that opens the panel, worded for a sentence; empty if no key works. With
    /// `isDesktops` the desktop assigns the keys and may have chosen a different one.
    static QString panelKey(const HotKey &key, HotKeys::State state, bool isDesktops);

    /// The keys of one of the digit shortcuts: "⌘1" elsewhere.
    static QString digitShortcut(int digit);

    /// The shortcuts from the first to the last digit that jumps: "⌘1–⌘5" elsewhere.
    static QString digitShortcuts(int first, int last);

    // Sentences of the windows that mention parts of the desktop.

    static QString everythingStaysHere();
    /// Where a new user finds Morvane; elsewhere that is beside the clock.
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
