#pragma once

#include <QString>

namespace morvane {

/// The desktop's program for installing a package from the disk. Main thread.
class PackageInstaller {
public:
    PackageInstaller() = default;
    PackageInstaller(const PackageInstaller &) = delete;
    PackageInstaller &operator=(const PackageInstaller &) = delete;
    virtual ~PackageInstaller() = default;

    /// Opens the package in that program, where the person may install it. False if there certainly
    /// is no such program.
    [[nodiscard]] virtual bool open(const QString &path) = 0;
};

/// For a machine without a desktop.
class NullPackageInstaller final : public PackageInstaller {
public:
    bool open(const QString &) override { return false; }
};

} // namespace morvane
