#include "Platform/Linux/Desktop/DesktopApplications.h"

#include "Platform/Linux/Desktop/DesktopEntry.h"
#include "Platform/Linux/Desktop/KnownApplications.h"

#include <QStandardPaths>

namespace morvane {

std::optional<QString> DesktopApplications::displayName(const QString &bundleID) const {
    for (const QString &id : KnownApplications::desktopEntryIDs(bundleID)) {
        // What hooks report as an application is not to lead out of the data folders.
        if (id.contains(QLatin1Char('/'))) {
            continue;
        }
        const QString path = QStandardPaths::locate(QStandardPaths::ApplicationsLocation,
                                                    id + QLatin1String(".desktop"));
        const auto name =
            path.isEmpty() ? std::nullopt : DesktopEntry::value(path, QLatin1String("Name"));
        if (name) {
            return name;
        }
    }
    return std::nullopt;
}

} // namespace morvane
