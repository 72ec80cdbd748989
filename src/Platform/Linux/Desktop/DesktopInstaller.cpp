#include "Platform/Linux/Desktop/DesktopInstaller.h"

#include "Platform/Linux/Desktop/DesktopLauncher.h"

namespace morvane {

bool DesktopInstaller::open(const QString &path) {
    return DesktopLauncher::start({QStringLiteral("xdg-open"), path}, {});
}

} // namespace morvane
