#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// Where the programs of other makers are, those of a person's own installation too, of which a
/// desktop's environment often knows nothing. Stateless; safe from any thread. Reads directories.
namespace morvane::ToolPaths {

/// The places to look at for a tool, in their order.
QStringList candidates(const QString &tool);

/// The first of them that can be run. `PATH` has no say in it.
std::optional<QString> find(const QString &tool);

/// The places under the home folder where the usual installers and managers of versions put a
/// command.
QStringList inHome(const QString &command);

/// The paths that fit the pattern, in which one part may be "*", that of the newest folder first.
QStringList fitting(const QString &pattern);

} // namespace morvane::ToolPaths
