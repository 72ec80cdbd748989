#pragma once

#include "Core/Shell/UpdateManager.h"
#include "Platform/PackageInstaller.h"
#include "Support/CoreWorld.h"

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
struct UpdateWorld : CoreWorld {
    UpdateManager::Means means(HttpsClient &https, Tools &tools) {
        return {https, scheduler, background, tools, installer};
    }

    FakePackageInstaller installer;
};

} // namespace morvane
