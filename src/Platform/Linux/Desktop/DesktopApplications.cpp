#include "Platform/Linux/Desktop/DesktopApplications.h"

#include "Platform/Linux/Desktop/DesktopEntry.h"
#include "Platform/Linux/Desktop/KnownApplications.h"

namespace morvane {

namespace {

/// What the application's desktop entry has for a key.
std::optional<QString> entryValue(const QString &bundleID, QLatin1String key) {
    for (const QString &id : KnownApplications::desktopEntryIDs(bundleID)) {
        const auto path = DesktopEntry::pathOf(id);
        auto value = path ? DesktopEntry::value(*path, key) : std::nullopt;
        if (value) {
            return value;
        }
    }
    return std::nullopt;
}

bool isSame(const QString &name, const QString &other) {
    return name.compare(other, Qt::CaseInsensitive) == 0;
}

} // namespace

std::optional<QString> DesktopApplications::displayName(const QString &bundleID) const {
    return entryValue(bundleID, QLatin1String("Name"));
}

bool DesktopApplications::isTerminal(const QString &foreground) const {
    const auto categories = entryValue(foreground, QLatin1String("Categories")).value_or(QString());
    return KnownApplications::isTerminal(foreground) ||
           categories.split(QLatin1Char(';')).contains(QLatin1String("TerminalEmulator"));
}

bool DesktopApplications::isCalled(const QString &bundleID, const QString &foreground) const {
    if (isSame(bundleID, foreground)) {
        return true;
    }
    const auto windowClass = entryValue(bundleID, QLatin1String("StartupWMClass"));
    return windowClass && isSame(KnownApplications::bundleID(*windowClass), foreground);
}

} // namespace morvane
