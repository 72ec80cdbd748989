#pragma once

#include "Platform/Failure.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

namespace morvane {

/// A downloaded package, from when it is known to be ours until the system's installer has had it.
/// One at a time lies in a folder of this user's own. Stateless; any thread, but for the files
/// rather none that must not wait.
class UpdatePackage {
    Q_DECLARE_TR_FUNCTIONS(UpdatePackage)

public:
    /// Puts these bytes where only this user can reach them, in place of what was there, and says
    /// where that is. The version is one that `UpdateFeed` lets through.
    static Result<QString> keep(const QByteArray &package, const QString &version);

    /// Removes what was kept, and the folder.
    static void discard();

    /// Asks dpkg-deb for what `isMorvane` needs to know of a package.
    static QStringList question(const QString &path);

    /// Whether a package that dpkg-deb says this of is this program in this very version. A server
    /// that hands out an old package, which is signed as well, can lie about everything but that.
    static bool isMorvane(const QByteArray &fields, const QString &version);
};

} // namespace morvane
