#pragma once

#include <QString>
#include <QStringList>

/// What the applications that we have identifiers for are called on this desktop. Pure functions.
namespace morvane::KnownApplications {

/// The ids of the application's desktop entries, without their ending; the identifier itself for
/// one that we don't know.
QStringList desktopEntryIDs(const QString &bundleID);

/// The classes that the application's windows are known to have; empty for one that we don't know.
QStringList windowClasses(const QString &bundleID);

/// The identifier of the application whose window has this class (the second of the two names of
/// WM_CLASS); the class itself for one that we don't know.
QString bundleID(const QString &windowClass);

/// True for the usual terminals of this desktop that are on no other, each by the name that
/// `bundleID` gives.
bool isTerminal(const QString &bundleID);

} // namespace morvane::KnownApplications
