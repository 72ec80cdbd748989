#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// Finds other makers' programs, also those in a person's home folder, which a desktop session's
/// `PATH` often leaves out. Stateless; safe from any thread. Reads directories.
namespace morvane::ToolPaths {

/// The places to look at for a tool, in their order.
QStringList candidates(const QString &tool);

/// The first candidate that can be run. `PATH` is not consulted.
std::optional<QString> find(const QString &tool);

/// The places under the home folder where the usual installers and version managers put a command.
QStringList inHome(const QString &command);

/// The paths that match the pattern, one part of which may be "*"; the newest folder's come first.
QStringList fitting(const QString &pattern);

} // namespace morvane::ToolPaths
