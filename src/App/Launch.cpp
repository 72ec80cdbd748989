#include "App/Launch.h"

#include "App/AppDelegate.h"
#include "App/PlatformChooser.h"
#include "Core/Settings/Defaults.h"
#include "Platform/Linux/DescriptorLimit.h"
#include "Platform/Linux/Desktop/SingleInstance.h"
#include "Platform/Linux/TerminationSignals.h"
#include "Presentation/Style/DarkPalette.h"

#include <QApplication>
#include <QMessageBox>
#include <QTextStream>

#include <cstdlib>
#include <memory>

namespace morvane {

namespace {

/// Time for one that is just starting up, or busy.
constexpr Seconds answerLimit(5);

/// An application with a screen where one can be reached, and one without where not: Qt ends the
/// process when it is asked for a screen that isn't there.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv) {
    if (qEnvironmentVariable("QT_QPA_PLATFORM") != QLatin1String("offscreen")) {
        if (!hasScreen()) {
            return std::make_unique<QCoreApplication>(argc, argv);
        }
        // Whatever a Wayland desktop has set for its programs: a native window could neither place
        // itself nor stay above the others, so there it is XWayland.
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    // A desktop's theme would load its whole toolkit, for windows that use nothing of it.
    QApplication::setDesktopSettingsAware(false);
    QApplication::setQuitOnLastWindowClosed(false);
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setPalette(darkPalette());
    return application;
}

/// Somebody waits for the program to appear, in a terminal or before a screen.
int giveUp(const QString &why) {
    QTextStream(stderr) << why << Qt::endl;
    if (qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr) {
        QMessageBox(QMessageBox::Warning, QStringLiteral("Morvane"), why).exec();
    }
    return EXIT_FAILURE;
}

} // namespace

int launch(int argc, char **argv, const std::function<void(PlatformServices &)> &adjust) {
    raiseDescriptorLimit();
    QCoreApplication::setApplicationName(QStringLiteral("Morvane"));
    const auto application = makeApplication(argc, argv);
    endOnTerminationSignals(*application);

    SingleInstance instance(Defaults::folder());
    switch (instance.claim(answerLimit)) {
    case SingleInstance::Outcome::isFirst:
        break;
    case SingleInstance::Outcome::toldTheFirst:
        return EXIT_SUCCESS;
    case SingleInstance::Outcome::firstIsSilent:
        return giveUp(QCoreApplication::translate(
            "Launch",
            "Morvane is already running, but doesn't answer. End it, and start it again."));
    }
    PlatformServices platform = choosePlatform();
    if (adjust) {
        adjust(platform);
    }
    AppDelegate delegate(MorvaneSettings::shared(), platform);
    QObject::connect(&instance, &SingleInstance::reopened, application.get(),
                     [&delegate] { delegate.applicationShouldHandleReopen(); });
    platform.scheduler->post([&delegate] { delegate.applicationDidFinishLaunching(); });
    const int status = QCoreApplication::exec();
    // Before the pool ends, which may end the process where it stands.
    Defaults::standard().flush();
    return status;
}

} // namespace morvane
