#pragma once

#include "Platform/InstalledApplications.h"

namespace morvane {

/// Knows no application.
class NoApplications : public InstalledApplications {
public:
    std::optional<QString> displayName(const QString &) const override { return std::nullopt; }
    bool isTerminal(const QString &) const override { return false; }
    bool isCalled(const QString &bundleID, const QString &foreground) const override {
        return bundleID == foreground;
    }
};

} // namespace morvane
