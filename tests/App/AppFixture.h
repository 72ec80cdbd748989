#pragma once

#include "App/AppController.h"
#include "App/FakePlatform.h"
#include "Core/Settings/Defaults.h"
#include "Support/AccessibleControls.h"
#include "Support/Printing.h"
#include "Support/SendEvent.h"
#include "Support/TemporaryHome.h"

#include <QTcpServer>

namespace morvane {

/// A home folder, settings with a free port, and a machine without a screen whose time and whose
/// background work are in the test's hands.
class AppFixture : public testing::Test {
protected:
    AppFixture() { settings.setPort(takenPorts(1).front()->serverPort()); }

    /// Takes a port that was free, and those behind it, for as long as the result lives. One that
    /// is somebody else's already serves as well.
    static std::vector<std::unique_ptr<QTcpServer>> takenPorts(int count) {
        std::vector<std::unique_ptr<QTcpServer>> result;
        for (int index = 0; index < count; ++index) {
            const int port = index == 0 ? 0 : result.front()->serverPort() + index;
            result.push_back(std::make_unique<QTcpServer>());
            result.back()->listen(QHostAddress::LocalHost, static_cast<quint16>(port));
        }
        return result;
    }

    QByteArray read(const char *path) const { return home.read(QLatin1String(path)); }
    /// Whether the next start would find this key.
    bool isStored(const char *key) {
        defaults.flush();
        return Defaults(home.path("config"), "test").contains(QLatin1String(key));
    }

    FakeStatusItemHost &statusItemHost() {
        return static_cast<FakeStatusItemHost &>(*platform.statusItemHost);
    }
    /// The window of the capsule and its panel.
    FakeOverlayWindow &overlay() {
        return *static_cast<FakeOverlayWindows &>(*platform.overlays).alive.first();
    }
    /// Whether the capsule or its panel is in sight once it has had the time to come or go.
    bool isOverlayShown() {
        scheduler.advance(Seconds(2));
        const auto &overlays = static_cast<FakeOverlayWindows &>(*platform.overlays).alive;
        return !overlays.isEmpty() && overlays.first()->isVisible();
    }

    TemporaryHome home;
    Defaults defaults{home.path("config"), "test"};
    MorvaneSettings settings{defaults};
    PlatformServices platform = fakePlatform();
    ManualScheduler &scheduler = static_cast<ManualScheduler &>(*platform.scheduler);
    FakeHotKeys &hotKeys = static_cast<FakeHotKeys &>(*platform.hotKeys);
    ManualPool &background = static_cast<ManualPool &>(*platform.background);
};

/// With a controller that has not been started.
class ControllerFixture : public AppFixture {
protected:
    AppController controller{settings, platform};
    AgentConnections &connections = controller.connections();
    SessionStore &store = controller.store();
};

} // namespace morvane
