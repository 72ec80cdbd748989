#pragma once

#include "App/PlatformServices.h"
#include "Support/ManualPool.h"

namespace morvane {

/// Knows no application.
class NoApplications : public InstalledApplications {
public:
    std::optional<QString> displayName(const QString &) const override { return std::nullopt; }
};

/// Keeps whether the program starts at login, and fails when told to.
class FakeLoginItem : public LoginItem {
public:
    bool isEnabled() const override { return enabled; }
    std::optional<QString> registerItem() override { return change(true); }
    std::optional<QString> unregisterItem() override { return change(false); }

    bool enabled = false;
    std::optional<QString> failure;

private:
    std::optional<QString> change(bool wanted) {
        if (!failure) {
            enabled = wanted;
        }
        return failure;
    }
};

/// A machine without a screen, on a scheduler of the test's.
inline PlatformServices fakePlatform(std::unique_ptr<Scheduler> scheduler) {
    PlatformServices result;
    result.scheduler = std::move(scheduler);
    result.background = std::make_unique<ManualPool>();
    result.applications = std::make_unique<NoApplications>();
    result.loginItem = std::make_unique<FakeLoginItem>();
    return result;
}

} // namespace morvane
