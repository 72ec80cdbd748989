#include "Core/Hooks/Health.h"

namespace morvane {

QStringList Health::issues() const {
    QStringList result;
    if (!settingsReadable) {
        result << tr("settings file missing or unreadable");
    }
    if (hooksPresent && !scriptExecutable) {
        result << tr("forwarder script missing");
    }
    if (hooksPresent && !entriesCurrent) {
        result << tr("hook entries out of date");
    }
    if (statusLine == StatusLineHealth::scriptMissing) {
        result << tr("statusline script missing");
    }
    return result;
}

} // namespace morvane
