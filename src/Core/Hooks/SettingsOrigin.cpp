#include "Core/Hooks/SettingsOrigin.h"

#include "Core/Ground/LinkTarget.h"
#include "Core/Ground/RegularFile.h"
#include "Core/Ground/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace morvane {

namespace {

/// The topmost folder missing on the path to a file; empty where all of them exist.
QString firstMissingFolder(const QString &path) {
    QString missing;
    QString folder = QFileInfo(path).path();
    while (!QFileInfo::exists(folder)) {
        missing = folder;
        folder = QFileInfo(folder).path();
    }
    return missing;
}

/// Removes the file's folder, and those above it up to `top`, as far as they are empty.
void removeFolders(const QString &path, const QString &top) {
    QString folder = QFileInfo(path).path();
    const auto isWithin = [&] { return folder == top || folder.startsWith(top + u'/'); };
    while (!top.isEmpty() && isWithin() && ::rmdir(QFile::encodeName(folder).constData()) == 0) {
        folder = QFileInfo(folder).path();
    }
}

} // namespace

std::optional<QByteArray> SettingsOrigin::ownContent(const QString &path) {
    if (QFileInfo(path).isSymbolicLink()) {
        return std::nullopt;
    }
    const auto content = RegularFile::whole(path);
    return content ? std::optional(*content) : std::nullopt;
}

std::optional<SettingsOrigin::Content> SettingsOrigin::read() const {
    if (auto bytes = ownContent(copyPath())) {
        return Content{std::move(bytes)};
    }
    return madeFolder() ? std::optional(Content{}) : std::nullopt;
}

/// The topmost folder that we made for a file of our making; empty where all of them existed. None
/// for any other file: one that somebody has since moved elsewhere, behind a link, is theirs.
std::optional<QString> SettingsOrigin::madeFolder() const {
    const QByteArrayList mark = ownContent(markPath()).value_or(QByteArray()).split('\0');
    const bool isOurs = mark.size() == 2 && QFile::decodeName(mark[1]) == linkTarget(m_path);
    return isOurs ? std::optional(QFile::decodeName(mark[0])) : std::nullopt;
}

Result<void> SettingsOrigin::keep(const std::optional<QByteArray> &bytes) const {
    const QString target = linkTarget(m_path);
    const QString missing = bytes ? QString() : firstMissingFolder(target);
    QDir().mkpath(QFileInfo(target).path());
    WholeFile file(bytes ? copyPath() : markPath());
    if (bytes) {
        file.setModel(target);
    }
    const auto written =
        file.write(bytes.value_or(QFile::encodeName(missing) + '\0' + QFile::encodeName(target)));
    if (written) {
        QFile::remove(bytes ? markPath() : copyPath());
    }
    return written;
}

void SettingsOrigin::forget() const {
    const QString made = madeFolder().value_or(QString());
    QFile::remove(copyPath());
    QFile::remove(markPath());
    removeFolders(linkTarget(m_path), made);
}

} // namespace morvane
