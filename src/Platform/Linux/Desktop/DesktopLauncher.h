#pragma once

#include <QString>
#include <QStringList>

/// Starts applications, mostly by their desktop entries. Main thread.
namespace morvane::DesktopLauncher {

/// Starts the application detached, in the person's home folder: it outlives this program, and
/// inherits none of its descriptors. The startup id tells the desktop that a person waits for it,
/// and may be empty. Does nothing if the application isn't installed, its entry is malformed, or it
/// needs a terminal.
void launch(const QString &bundleID, const QString &startupID);

/// Starts a program and its arguments in the same way. False if it isn't installed.
bool start(QStringList command, const QString &startupID);

} // namespace morvane::DesktopLauncher
