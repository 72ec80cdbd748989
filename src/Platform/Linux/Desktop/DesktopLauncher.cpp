#include "Platform/Linux/Desktop/DesktopLauncher.h"

#include "Platform/Linux/DescriptorLimit.h"
#include "Platform/Linux/Desktop/DesktopEntry.h"
#include "Platform/Linux/Desktop/KnownApplications.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <linux/close_range.h>
#include <unistd.h>

namespace morvane::DesktopLauncher {

namespace {

constexpr unsigned int firstOwn = 3; ///< the descriptor after the standard streams

bool isTrue(const std::optional<QString> &value) {
    return value == QLatin1String("true") || value == QLatin1String("1");
}

/// A program with a slash in its name must have an absolute path: a path relative to our folder
/// means nothing.
QString executable(const QString &program) {
    if (!program.contains(QLatin1Char('/'))) {
        return QStandardPaths::findExecutable(program);
    }
    const QFileInfo info(program);
    return info.isAbsolute() && info.isFile() && info.isExecutable() ? program : QString();
}

/// The program's absolute path and its arguments; none if the entry can't be started.
std::optional<QStringList> commandOf(const QString &entry) {
    if (isTrue(DesktopEntry::value(entry, QLatin1String("Hidden"))) ||
        isTrue(DesktopEntry::value(entry, QLatin1String("Terminal")))) {
        return std::nullopt;
    }
    auto command = DesktopEntry::command(
        DesktopEntry::value(entry, QLatin1String("Exec")).value_or(QString()));
    if (command) {
        command->first() = executable(command->first());
    }
    return command && !command->first().isEmpty() ? command : std::nullopt;
}

/// Our environment, without what is meant for this program alone.
QProcessEnvironment environment(const QString &startupID) {
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    for (const char *own :
         {"QT_QPA_PLATFORM", "GIO_LAUNCHED_DESKTOP_FILE", "GIO_LAUNCHED_DESKTOP_FILE_PID"}) {
        result.remove(QLatin1String(own));
    }
    for (const char *token : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
        result.remove(QLatin1String(token));
        if (!startupID.isEmpty()) {
            result.insert(QLatin1String(token), startupID);
        }
    }
    return result;
}

/// Runs in the forked child. A second fork becomes the application, an orphan; the child itself
/// exits at once, which is what the parent sees. Makes only calls that are allowed after a fork in
/// a program with threads.
void detach() {
    ::setsid();
    if (::fork() != 0) {
        ::_exit(0);
    }
    restoreDescriptorLimit();
    // Includes the descriptors that this program has inherited itself.
    ::close_range(firstOwn, ~0U, CLOSE_RANGE_CLOEXEC);
}

void startProcess(const QStringList &command, const QString &startupID) {
    auto *process = new QProcess;
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    QObject::connect(process, &QProcess::errorOccurred, process, &QObject::deleteLater);
    process->setProgram(command.first());
    process->setArguments(command.mid(1));
    process->setProcessEnvironment(environment(startupID));
    process->setWorkingDirectory(QDir::homePath());
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setChildProcessModifier(&detach);
    process->start();
}

} // namespace

void launch(const QString &bundleID, const QString &startupID) {
    for (const QString &id : KnownApplications::desktopEntryIDs(bundleID)) {
        const auto entry = DesktopEntry::pathOf(id);
        if (const auto command = entry ? commandOf(*entry) : std::nullopt) {
            startProcess(*command, startupID);
            return;
        }
    }
}

bool start(QStringList command, const QString &startupID) {
    command.first() = executable(command.first());
    if (command.first().isEmpty()) {
        return false;
    }
    startProcess(command, startupID);
    return true;
}

} // namespace morvane::DesktopLauncher
