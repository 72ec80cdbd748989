#pragma once

#include "Core/Settings/Defaults.h"
#include "Core/Shell/UpdateManager.h"
#include "Platform/PackageInstaller.h"
#include "Support/ManualPool.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryHome.h"

#include <QStringList>

namespace morvane {

/// Keeps what it was to install.
class FakePackageInstaller : public PackageInstaller {
public:
    bool open(const QString &path) override {
        opened << path;
        return true;
    }

    QStringList opened;
};

/// What updates are made of but for the network and the tools, which each test has of its own.
struct UpdateWorld {
    UpdateManager::Means means(HttpsClient &https, Tools &tools) {
        return {https, scheduler, background, tools, installer};
    }

    /// Lets time pass, and the pool do its work.
    void pass(Seconds time) {
        scheduler.advance(time);
        background.runAll();
        scheduler.runPosted();
    }

    TemporaryHome home;
    Defaults defaults{home.path("config"), "test"};
    ManualScheduler scheduler;
    ManualPool background;
    FakePackageInstaller installer;
};

} // namespace morvane
