#pragma once

#include "Platform/PackageInstaller.h"

namespace morvane {

/// Whatever the desktop opens a package with, by xdg-open: GNOME Software, Discover or GDebi where
/// they are installed. A desktop that has none of them may show what is inside of the package
/// instead, which nothing here can tell apart.
class DesktopInstaller : public PackageInstaller {
public:
    [[nodiscard]] bool open(const QString &path) override;
};

} // namespace morvane
