#include "Platform/Linux/DesktopApplications.h"

#include "Platform/Linux/KnownApplications.h"

#include <QFile>
#include <QStandardPaths>

namespace morvane {

namespace {

/// The "Name" of the main group, in the desktop entry format of freedesktop.org. Names in other
/// languages have keys of their own and are passed over.
std::optional<QString> nameIn(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return std::nullopt;
    }
    bool inMainGroup = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inMainGroup = line == QLatin1String("[Desktop Entry]");
        } else if (inMainGroup && line.startsWith(QLatin1String("Name="))) {
            return line.mid(5).trimmed();
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> DesktopApplications::displayName(const QString &bundleID) const {
    for (const QString &id : KnownApplications::desktopEntryIDs(bundleID)) {
        // What hooks report as an application is not to lead out of the data folders.
        if (id.contains(QLatin1Char('/'))) {
            continue;
        }
        const QString path = QStandardPaths::locate(QStandardPaths::ApplicationsLocation,
                                                    id + QLatin1String(".desktop"));
        if (const auto name = path.isEmpty() ? std::nullopt : nameIn(path)) {
            return name;
        }
    }
    return std::nullopt;
}

} // namespace morvane
