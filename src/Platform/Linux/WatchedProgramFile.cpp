#include "Platform/Linux/WatchedProgramFile.h"

#include <QFile>

#include <array>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace morvane {

WatchedProgramFile::WatchedProgramFile(QString path)
    : m_path(std::move(path)), m_identity(identityOf(m_path)),
      m_changes(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // Renaming another file over this one removes its link, which inotify reports as IN_ATTRIB.
    const QByteArray file = QFile::encodeName(m_path);
    if (::inotify_add_watch(m_changes.number(), file.constData(), IN_ATTRIB | IN_MOVE_SELF) >= 0) {
        m_notifier.emplace(m_changes.number(), QSocketNotifier::Read);
        connect(&*m_notifier, &QSocketNotifier::activated, this, &WatchedProgramFile::hear);
    }
}

void WatchedProgramFile::hear() {
    std::array<char, 1024> events{};
    while (::read(m_changes.number(), events.data(), events.size()) > 0) {
    }
    look();
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
