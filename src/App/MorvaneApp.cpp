#include "App/AppDelegate.h"
#include "App/PlatformChooser.h"
#include "Core/Defaults.h"
#include "Platform/Linux/SingleInstance.h"

#include <QApplication>

#include <memory>

namespace {

/// An application with a screen where one can be reached, and one without where not: Qt ends the
/// process when it is asked for a screen that isn't there.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv) {
    if (qEnvironmentVariable("QT_QPA_PLATFORM") != QLatin1String("offscreen")) {
        if (!morvane::hasScreen()) {
            return std::make_unique<QCoreApplication>(argc, argv);
        }
        // Whatever a Wayland desktop has set for its programs: a native window could neither place
        // itself nor stay above the others, so there it is XWayland.
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    // A desktop's theme would load its whole toolkit, for windows that use nothing of it.
    QApplication::setDesktopSettingsAware(false);
    QApplication::setQuitOnLastWindowClosed(false);
    return std::make_unique<QApplication>(argc, argv);
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication::setApplicationName(QStringLiteral("Morvane"));
    const auto application = makeApplication(argc, argv);

    morvane::SingleInstance instance(morvane::Defaults::folder());
    if (!instance.claim()) {
        return 0;
    }
    const morvane::PlatformServices platform = morvane::choosePlatform();
    morvane::AppDelegate delegate(morvane::MorvaneSettings::shared(), platform);
    QObject::connect(&instance, &morvane::SingleInstance::reopened, application.get(),
                     [&delegate] { delegate.applicationShouldHandleReopen(); });
    platform.scheduler->post([&delegate] { delegate.applicationDidFinishLaunching(); });
    return QCoreApplication::exec();
}
