#pragma once

#include "Platform/InstalledApplications.h"

namespace morvane {

/// The applications that have a desktop entry in one of the XDG data folders. Each call reads a
/// small file.
class DesktopApplications : public InstalledApplications {
public:
    std::optional<QString> displayName(const QString &bundleID) const override;
    bool isTerminal(const QString &foreground) const override;
    bool isCalled(const QString &bundleID, const QString &foreground) const override;
};

} // namespace morvane
