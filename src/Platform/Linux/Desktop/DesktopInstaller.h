#pragma once

#include "Platform/Linux/Desktop/DesktopLauncher.h"
#include "Platform/PackageInstaller.h"

namespace morvane {

/// Whatever the desktop opens a package with, by xdg-open: GNOME Software, Discover or GDebi where
/// they are installed. A desktop that has none of them may show what is inside of the package
/// instead, which nothing here can tell apart.
class DesktopInstaller : public PackageInstaller {
public:
    [[nodiscard]] bool open(const QString &path) override {
        return DesktopLauncher::start({QStringLiteral("xdg-open"), path}, {});
    }
};

} // namespace morvane
