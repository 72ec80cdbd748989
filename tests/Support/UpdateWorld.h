#pragma once

#include "Core/Shell/UpdateManager.h"
#include "Platform/PackageInstaller.h"
#include "Support/CoreWorld.h"

namespace morvane {

/// Records the packages that it was to open.
class FakePackageInstaller : public PackageInstaller {
public:
    bool open(const QString &path) override {
        opened << path;
        return true;
    }

    QStringList opened;
};

/// What updates need, except the network and the tools, which each test provides.
struct UpdateWorld : CoreWorld {
    UpdateManager::Means means(HttpsClient &https, Tools &tools) {
        return {https, scheduler, background, tools, installer};
    }

    /// A feed that offers version 1.1. The given members come first, and so override its own.
    static QByteArray feed(const QByteArray &members = {}) {
        return '{' + members + R"("version":"1.1","package":"morvane.deb","size":3,)" +
               R"("notes":"Better.","signature":")" + QByteArray(64, 's').toBase64() + "\"}";
    }

    FakePackageInstaller installer;
};

} // namespace morvane
