#include "Presentation/Style/PlatformWords.h"

namespace morvane {

QString PlatformWords::hotKey(const HotKey &key) {
    QStringList names;
    const auto append = [&](bool isHeld, const QString &name) {
        if (isHeld) {
            names.append(name);
        }
    };
    append(key.super, tr("Super"));
    append(key.control, tr("Ctrl"));
    append(key.alt, tr("Alt"));
    append(key.shift, tr("Shift"));
    names.append(key.symbol);
    return names.join(u'+');
}

QKeySequence PlatformWords::keySequence(const HotKey &key) {
    QString names = key.symbol;
    names.prepend(key.shift ? QStringLiteral("Shift+") : QString());
    names.prepend(key.alt ? QStringLiteral("Alt+") : QString());
    names.prepend(key.control ? QStringLiteral("Ctrl+") : QString());
    names.prepend(key.super ? QStringLiteral("Meta+") : QString());
    return QKeySequence::fromString(names, QKeySequence::PortableText);
}

QString PlatformWords::hotKeyProblem(const HotKey &key, HotKeys::State state) {
    switch (state) {
    case HotKeys::State::taken:
        return tr("%1 is taken by another program").arg(hotKey(key));
    case HotKeys::State::unavailable:
        return tr("%1 doesn't work on this desktop").arg(hotKey(key));
    case HotKeys::State::pending:
    case HotKeys::State::works:
        break;
    }
    return {};
}

QString PlatformWords::panelKey(const HotKey &key, HotKeys::State state, bool isDesktops) {
    if (state != HotKeys::State::works) {
        return {};
    }
    return isDesktops ? tr("the key that the desktop has for it") : hotKey(key);
}

QString PlatformWords::digitShortcut(int digit) {
    return tr("Ctrl+%1").arg(digit);
}

QString PlatformWords::digitShortcuts(int first, int last) {
    return tr("Ctrl+%1–Ctrl+%2").arg(first).arg(last);
}

QString PlatformWords::everythingStaysHere() {
    // Not every desktop has a tray.
    return tr("Your coding agents' status, at the top of the screen. Everything stays on this "
              "computer.");
}

QString PlatformWords::whereToLook(bool hasTrayIcon) {
    return hasTrayIcon ? tr("Look for the alien in the tray.")
                       : tr("Look for the alien at the top of the screen.");
}

QString PlatformWords::openThePanel(const QString &panelKey, bool hasTrayIcon) {
    if (panelKey.isEmpty()) {
        return hasTrayIcon ? tr("Click the alien in the tray to open the panel.")
                           : tr("Hover the capsule to open the panel.");
    }
    return (hasTrayIcon ? tr("Click the alien in the tray, or press %1, to open the panel.")
                        : tr("Hover the capsule, or press %1, to open the panel."))
        .arg(panelKey);
}

QString PlatformWords::noNotificationSwitch() {
    return tr("None of the agents on this computer has a notification switch Morvane can flip.");
}

QString PlatformWords::windowFocusNeeds() {
    return tr("Lets a jump raise the right project window. Needs a window manager that lets "
              "programs raise windows.");
}

QString PlatformWords::windowFocusFooter() {
    return tr("Jumping always brings the session's app forward. Where the window manager lets "
              "programs raise windows, it also raises that project's window, so IDEs like WebStorm "
              "or PhpStorm with several projects open land on the right one.");
}

QString PlatformWords::showIcon() {
    return tr("Show icon in the t&ray");
}

QString PlatformWords::iconIsHidden(const QString &panelKey) {
    const QString way = panelKey.isEmpty()
                            ? tr("Hover the capsule to open the panel.")
                            : tr("Open the panel with %1, or hover the capsule.").arg(panelKey);
    return tr("Morvane is still running. %1 To reach Settings again, start Morvane once more.")
        .arg(way);
}

QString PlatformWords::removeTheProgram() {
    return tr("Remove the program afterwards, as you installed it.");
}

QString PlatformWords::removeTheProgramToFinish() {
    return tr("Morvane will quit — remove the program, as you installed it, to finish "
              "uninstalling.");
}

QString PlatformWords::acknowledgementsAreMissing() {
    return tr("THIRD-PARTY.txt is missing from the program.");
}

} // namespace morvane
