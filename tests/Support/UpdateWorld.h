#pragma once

#include "Core/Shell/UpdateManager.h"
#include "Platform/PackageInstaller.h"
#include "Support/CoreWorld.h"

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

    /// Of version 1.1. What is put before its members counts in their place.
    static QByteArray feed(const QByteArray &members = {}) {
        return '{' + members + R"("version":"1.1","package":"morvane.deb","size":3,)" +
               R"("notes":"Better.","signature":")" + QByteArray(64, 's').toBase64() + "\"}";
    }

    FakePackageInstaller installer;
};

} // namespace morvane
