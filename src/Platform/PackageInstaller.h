#pragma once

#include <QString>

namespace morvane {

/// The program by which this desktop installs a package that lies on the disk. Main thread.
class PackageInstaller {
public:
    PackageInstaller() = default;
    PackageInstaller(const PackageInstaller &) = delete;
    PackageInstaller &operator=(const PackageInstaller &) = delete;
    virtual ~PackageInstaller() = default;

    /// Shows the package to the person in that program, who installs it there, or doesn't. False
    /// where it is certain that there is no such program.
    [[nodiscard]] virtual bool open(const QString &path) = 0;
};

/// That of a machine without a desktop.
class NullPackageInstaller final : public PackageInstaller {
public:
    bool open(const QString &) override { return false; }
};

} // namespace morvane
