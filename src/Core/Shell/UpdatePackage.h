#pragma once

#include "Platform/Result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// A downloaded package, from when it is known to be ours until the system's installer has had it.
/// One at a time lies in a folder of this user's own.
namespace morvane::UpdatePackage {

/// Puts these bytes where only this user can reach them, in place of what was there, and says where
/// that is. The version is one that `UpdateFeed` lets through. Writes; not for the main thread.
Result<QString> keep(const QByteArray &package, const QString &version);

/// Removes what was kept, and the folder. Not for the main thread either.
void discard();

/// What to ask dpkg-deb, so that `isMorvane` can tell.
QStringList question(const QString &path);

/// Whether a package that dpkg-deb says this of is this program, in this very version. A server
/// that hands out an old package, which is signed as well, can lie about everything but that.
bool isMorvane(const QByteArray &fields, const QString &version);

} // namespace morvane::UpdatePackage
