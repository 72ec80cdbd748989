#include "Core/Shell/UpdatePackage.h"

#include "Core/Ground/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <sys/stat.h>

namespace morvane::UpdatePackage {

namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

/// In the cache, since the package may be deleted at any time and fetched again.
QString ownFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/morvane");
}

QString folder() {
    return ownFolder() + QStringLiteral("/update");
}

/// The value of a field of a package's control file, such as "Version: 1.2-1".
QByteArray field(const QByteArray &fields, const QByteArray &name) {
    for (const QByteArray &line : fields.split('\n')) {
        if (line.startsWith(name + ": ")) {
            return line.mid(name.size() + 2).trimmed();
        }
    }
    return {};
}

} // namespace

Result<QString> keep(const QByteArray &package, const QString &version) {
    discard();
    const QString place = folder();
    QDir().mkpath(ownFolder());
    if (::mkdir(QFile::encodeName(place).constData(), folderMode) != 0) {
        return cannotWrite(place, systemFailure(errno));
    }
    QString path = place + QStringLiteral("/morvane_%1.deb").arg(version);
    WholeFile file(path);
    file.setMode(fileMode);
    if (const auto written = file.write(package); !written) {
        discard();
        return cannotWrite(path, written.error());
    }
    return path;
}

void discard() {
    // A link in the folder's place is removed itself, and nothing behind it.
    if (!QFile::remove(folder())) {
        QDir(folder()).removeRecursively();
    }
    QDir().rmdir(ownFolder());
}

QStringList question(const QString &path) {
    return {QStringLiteral("--field"), path, QStringLiteral("Package"), QStringLiteral("Version")};
}

/// A Debian version is [epoch:]version[-revision].
bool isMorvane(const QByteArray &fields, const QString &version) {
    QByteArray told = field(fields, "Version");
    told = told.mid(told.indexOf(':') + 1);
    const qsizetype revision = told.lastIndexOf('-');
    return field(fields, "Package") == "morvane" &&
           (revision < 0 ? told : told.first(revision)) == version.toLatin1();
}

} // namespace morvane::UpdatePackage
