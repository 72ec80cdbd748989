#include "App/Launch.h"

#include "App/AppDelegate.h"
#include "App/CommandLine.h"
#include "App/PlatformChooser.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Platform/Linux/DescriptorLimit.h"
#include "Platform/Linux/Desktop/AutostartEntry.h"
#include "Platform/Linux/Desktop/SingleInstance.h"
#include "Platform/Linux/SharedHeap.h"
#include "Platform/Linux/TerminationSignals.h"
#include "Presentation/Style/DarkPalette.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QSessionManager>
#include <QTextStream>
#include <QToolTip>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <unistd.h>

namespace morvane {

namespace {

/// How long the first instance may take to answer: it may be starting up, or busy.
constexpr Seconds answerLimit(5);

/// Writes unsaved settings when the desktop's session is saved. The session manager must not
/// restart the program: the login item alone decides whether it starts with the next session.
void obeySessionManager(QGuiApplication &application) {
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application,
                     [] { Defaults::standard().flush(); });
    QObject::connect(
        &application, &QGuiApplication::saveStateRequest, &application,
        [](QSessionManager &session) { session.setRestartHint(QSessionManager::RestartNever); });
}

/// Ignores folders that are given by relative paths. They would depend on the folder that the
/// program is started in, and so would its settings and its lock.
void dropRelativeFolders() {
    for (const char *name :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        if (!qgetenv(name).startsWith('/')) {
            qunsetenv(name);
        }
    }
}

/// Makes an application with a screen if one can be reached, else one without: Qt ends the process
/// when it is asked for a screen that isn't there.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv) {
    if (qEnvironmentVariable("QT_QPA_PLATFORM") != QLatin1String("offscreen")) {
        if (!hasScreen()) {
            return std::make_unique<QCoreApplication>(argc, argv);
        }
        // Overrides what a Wayland desktop sets for its programs: a native window could neither
        // place itself nor stay above the others, so XWayland is used there.
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    // A desktop's theme would load its whole toolkit, for windows that use nothing of it.
    QApplication::setDesktopSettingsAware(false);
    QApplication::setQuitOnLastWindowClosed(false);
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setPalette(darkPalette());
    QToolTip::setPalette(darkPalette()); // tool tips have one of their own
    obeySessionManager(*application);
    return application;
}

/// The text shows up in a terminal, or in the journal of the desktop's session.
void say(const QString &what) {
    QTextStream(stderr) << what << Qt::endl;
}

/// Somebody waits for the program to appear, in a terminal or before a screen.
bool isAwaited() {
    return !QCoreApplication::arguments().contains(AutostartEntry::option);
}

int giveUp(const QString &why) {
    say(why);
    if (isAwaited() && qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr) {
        QMessageBox(QMessageBox::Warning, QStringLiteral("Morvane"), why).exec();
    }
    return EXIT_FAILURE;
}

/// Replaces this process by the program in this file. Returns only if that fails.
int become(const QString &path) {
    QByteArray file = QFile::encodeName(path);
    const std::array<char *, 2> arguments{file.data(), nullptr};
    restoreDescriptorLimit();
    ::execv(file.constData(), arguments.data());
    say(QCoreApplication::translate("Launch", "%1 could not be started: %2")
            .arg(path, qt_error_string()));
    return EXIT_FAILURE;
}

/// Returns the exit status. Sets `next` to the file of the program that is to follow, if any.
int run(int argc, char **argv, const std::function<void(PlatformServices &)> &adjust,
        std::optional<QString> &next) {
    const auto application = makeApplication(argc, argv);
    endOnTerminationSignals(*application);

    SingleInstance instance(
        Defaults::folder(),
        isOnScreen() ? SingleInstance::Screen::reached : SingleInstance::Screen::none,
        isAwaited() ? SingleInstance::Start::byPerson : SingleInstance::Start::atLogin);
    switch (instance.claim(answerLimit)) {
    case SingleInstance::Outcome::isFirst:
        break;
    case SingleInstance::Outcome::toldTheFirst:
        return EXIT_SUCCESS;
    case SingleInstance::Outcome::isOnAnotherDisplay:
        return giveUp(
            QCoreApplication::translate(
                "Launch", "Morvane already runs on the display %1. End it there to start it here.")
                .arg(instance.displayOfFirst()));
    case SingleInstance::Outcome::firstIsSilent:
        return giveUp(QCoreApplication::translate(
            "Launch",
            "Morvane is already running, but doesn't answer. End it, and start it again."));
    }
    if (qobject_cast<QGuiApplication *>(application.get()) == nullptr) {
        say(QCoreApplication::translate(
            "Launch", "Morvane reaches no X display: its server runs alone, and shows nothing."));
    }
    // Ends threads that can't be waited for, but still starts the program that is to follow.
    PlatformServices platform =
        choosePlatform([&next] { std::_Exit(next ? become(*next) : EXIT_SUCCESS); });
    if (adjust) {
        adjust(platform);
    }
    AppDelegate delegate(MorvaneSettings::shared(), platform);
    QObject::connect(&instance, &SingleInstance::reopened, application.get(),
                     [&delegate] { delegate.applicationShouldHandleReopen(); });
    QObject::connect(&instance, &SingleInstance::placeWanted, application.get(), [] {
        say(QCoreApplication::translate("Launch",
                                        "Morvane was started on a display, and goes on there."));
        QCoreApplication::exit();
    });
    QObject::connect(&delegate, &AppDelegate::restartRequested, application.get(), [&next] {
        next = QCoreApplication::applicationFilePath();
        QCoreApplication::exit();
    });
    platform.scheduler->post([&delegate] { delegate.applicationDidFinishLaunching(); });
    const int status = QCoreApplication::exec();
    // Before the pool ends, which may end the process where it stands.
    Defaults::standard().flush();
    if (Defaults::standard().isRemovedForGood()) {
        instance.leaveNothing();
    }
    return status;
}

} // namespace

int launch(int argc, char **argv, const std::function<void(PlatformServices &)> &adjust) {
    if (const auto status = CommandLine::answer(argc, argv)) {
        return *status;
    }
    dropRelativeFolders();
    shareOneHeap();
    raiseDescriptorLimit();
    failWritesPastLimit();
    QCoreApplication::setApplicationName(QStringLiteral("Morvane"));
    std::optional<QString> next;
    const int status = run(argc, argv, adjust, next);
    // Only once everything is closed: the next program needs the port, the lock and the display.
    return next ? become(*next) : status;
}

} // namespace morvane
