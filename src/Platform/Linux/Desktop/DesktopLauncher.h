#pragma once

#include <QString>
#include <QStringList>

/// Starts applications, mostly by their desktop entries. Main thread.
namespace morvane::DesktopLauncher {

/// Starts the application on its own, in the person's home folder: it outlives this program, and
/// has none of its files. The id tells the desktop that a person waits for it, and may be empty.
/// Nothing happens for an application that isn't installed, whose entry is malformed, or that needs
/// a terminal around it.
void launch(const QString &bundleID, const QString &startupID);

/// Starts a program and its arguments in the same way. False where it isn't installed.
bool start(QStringList command, const QString &startupID);

} // namespace morvane::DesktopLauncher
