#pragma once

#include "Platform/Result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// A downloaded package, from the time it is known to be ours until the system's installer has used
/// it. There is one at a time, in a folder of this user's own.
namespace morvane::UpdatePackage {

/// Writes these bytes where only this user can reach them, in place of what was there, and returns
/// the path. The version must have passed `UpdateFeed`. Not for the main thread.
Result<QString> keep(const QByteArray &package, const QString &version);

/// Removes what was kept, and the folder. Not for the main thread either.
void discard();

/// The arguments for dpkg-deb, whose output `isMorvane` takes.
QStringList question(const QString &path);

/// Whether a package with these dpkg-deb fields is this program, in exactly this version. A server
/// that hands out an old package, which is signed too, can lie about everything but that.
bool isMorvane(const QByteArray &fields, const QString &version);

} // namespace morvane::UpdatePackage
