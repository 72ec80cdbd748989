#include "Core/Hooks/Health.h"

namespace morvane {

QStringList Health::issues() const {
    QStringList result;
    if (!settingsReadable) {
        result << QStringLiteral("settings file missing or unreadable");
    }
    if (hooksPresent && !scriptExecutable) {
        result << QStringLiteral("forwarder script missing");
    }
    if (hooksPresent && !entriesCurrent) {
        result << QStringLiteral("hook entries out of date");
    }
    if (statusLine == StatusLineHealth::scriptMissing) {
        result << QStringLiteral("statusline script missing");
    }
    return result;
}

} // namespace morvane
