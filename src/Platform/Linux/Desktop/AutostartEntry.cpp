#include "Platform/Linux/Desktop/AutostartEntry.h"

#include "Platform/Linux/Desktop/DesktopEntry.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <utility>

namespace morvane {

namespace {

QString entryPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/autostart/io.morvane.morvane.desktop");
}

Failure entryNotWritten(const QString &path, const QString &reason) {
    return {AutostartEntry::tr("%1 could not be written: %2").arg(path, reason)};
}

} // namespace

AutostartEntry::AutostartEntry(QString program)
    : m_program(std::move(program)), m_path(entryPath()) {}

/// Desktops switch an entry off by one of two keys, and leave the file in place.
bool AutostartEntry::isEnabled() const {
    const auto says = [this](const char *key, const char *value) {
        return DesktopEntry::value(m_path, QLatin1String(key)) == QLatin1String(value);
    };
    return QFileInfo(m_path).isFile() && !says("Hidden", "true") &&
           !says("X-GNOME-Autostart-enabled", "false") && startsUs();
}

/// The entry's program may have been moved or removed since the entry was written, or the entry may
/// belong to another copy of this program. A program of another name may be a wrapper that starts
/// us.
bool AutostartEntry::startsUs() const {
    const auto command = DesktopEntry::command(
        DesktopEntry::value(m_path, QLatin1String("Exec")).value_or(QString()));
    const QFileInfo program(command ? QStandardPaths::findExecutable(command->first()) : QString());
    const QFileInfo ours(m_program);
    return program.isFile() && (program.fileName() != ours.fileName() ||
                                program.canonicalFilePath() == ours.canonicalFilePath());
}

Result<void> AutostartEntry::registerItem() {
    const QString folder = QFileInfo(m_path).path();
    if (!QDir().mkpath(folder)) {
        return Failure{tr("%1 could not be created").arg(folder)};
    }
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)) {
        return entryNotWritten(m_path, file.errorString());
    }
    file.write("[Desktop Entry]\n"
               "Type=Application\n"
               "Name=Morvane\n"
               "Exec=" +
               DesktopEntry::execValue(m_program) + ' ' + option.latin1() +
               "\n"
               "StartupNotify=false\n");
    // `commit` alone overlooks a failure to write buffered data.
    if (!file.flush() || !file.commit()) {
        return entryNotWritten(m_path, file.errorString());
    }
    return {};
}

Result<void> AutostartEntry::unregisterItem() {
    QFile file(m_path);
    const QFileInfo info(m_path);
    if ((!info.exists() && !info.isSymLink()) || file.remove()) {
        return {};
    }
    return Failure{tr("%1 could not be removed: %2").arg(m_path, file.errorString())};
}

} // namespace morvane
