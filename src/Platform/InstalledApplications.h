#pragma once

#include <QString>

#include <optional>

namespace morvane {

/// The applications installed on this machine. Main thread.
class InstalledApplications {
public:
    InstalledApplications() = default;
    InstalledApplications(const InstalledApplications &) = delete;
    InstalledApplications &operator=(const InstalledApplications &) = delete;
    virtual ~InstalledApplications() = default;

    /// The application's name for a person, or none when it isn't installed here.
    virtual std::optional<QString> displayName(const QString &bundleID) const = 0;

    /// True for a terminal of this platform. `foreground` is a name from `ForegroundApplication`.
    virtual bool isTerminal(const QString &foreground) const = 0;

    /// True when the application is the one that `ForegroundApplication` calls by this name.
    virtual bool isCalled(const QString &bundleID, const QString &foreground) const = 0;
};

} // namespace morvane
