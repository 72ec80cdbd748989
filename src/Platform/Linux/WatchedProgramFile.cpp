#include "Platform/Linux/WatchedProgramFile.h"

#include <QFile>

#include <sys/stat.h>

namespace morvane {

WatchedProgramFile::WatchedProgramFile(QString path)
    : m_path(std::move(path)), m_identity(identityOf(m_path)) {
    // What is renamed over the file takes its name away, which counts as a change of it.
    m_watcher.addPath(m_path);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &WatchedProgramFile::look);
}

/// A file that is gone hasn't been replaced: the program may have been removed.
void WatchedProgramFile::look() {
    const auto now = identityOf(m_path);
    if (now && m_identity && now != m_identity) {
        setReplaced();
    }
}

std::optional<WatchedProgramFile::Identity> WatchedProgramFile::identityOf(const QString &path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return Identity(status.st_dev, status.st_ino);
}

} // namespace morvane

#include "moc_WatchedProgramFile.cpp"
