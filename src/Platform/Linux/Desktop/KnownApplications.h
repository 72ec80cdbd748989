#pragma once

#include <QString>
#include <QStringList>

/// The names on this desktop of the applications that we have identifiers for. Pure functions.
namespace morvane::KnownApplications {

/// The ids of the application's desktop entries, without their ending; the identifier itself for
/// one that we don't know.
QStringList desktopEntryIDs(const QString &bundleID);

/// The window classes that the application is known to have; empty for one that we don't know.
QStringList windowClasses(const QString &bundleID);

/// The identifier of the application whose window has this class (the second of the two names of
/// WM_CLASS); the class itself for one that we don't know.
QString bundleID(const QString &windowClass);

/// True for the usual terminals that only exist on this desktop, by the name that `bundleID`
/// returns.
bool isTerminal(const QString &bundleID);

} // namespace morvane::KnownApplications
