#pragma once

#include <QString>

/// Starts applications by their desktop entries. Main thread.
namespace morvane::DesktopLauncher {

/// Starts the application on its own, in the person's home folder: it outlives this program, and
/// has none of its files. The id tells the desktop that a person waits for it, and may be empty.
/// Nothing happens for an application that isn't installed, whose entry is malformed, or that needs
/// a terminal around it.
void launch(const QString &bundleID, const QString &startupID);

} // namespace morvane::DesktopLauncher
