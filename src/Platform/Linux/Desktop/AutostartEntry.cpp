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

/// Desktops that let a person switch an entry off do it by one of two keys, and leave the file.
bool AutostartEntry::isEnabled() const {
    const auto says = [this](const char *key, const char *value) {
        return DesktopEntry::value(m_path, QLatin1String(key)) == QLatin1String(value);
    };
    return QFileInfo(m_path).isFile() && !says("Hidden", "true") &&
           !says("X-GNOME-Autostart-enabled", "false") && startsUs();
}

/// The program of the entry may have moved, or have been removed, since that was written; or the
/// entry is that of another copy of this one. One of another name may be on the way to us.
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
    // The commit alone overlooks a failure to write what is buffered.
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
