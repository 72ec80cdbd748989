#pragma once

#include "Platform/Linux/Desktop/DesktopLauncher.h"
#include "Platform/PackageInstaller.h"

namespace morvane {

/// Opens a package with xdg-open, in GNOME Software, Discover or GDebi where they are installed. A
/// desktop without them may show the package's contents instead; that can't be told apart here.
class DesktopInstaller : public PackageInstaller {
public:
    [[nodiscard]] bool open(const QString &path) override {
        return DesktopLauncher::start({QStringLiteral("xdg-open"), path}, {});
    }
};

} // namespace morvane
