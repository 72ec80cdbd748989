#pragma once

#include <QString>

namespace morvane {

/// The file at the end of a chain of symbolic links, whether it exists or not. For links in a
/// circle it is one of the links.
QString linkTarget(const QString &path);

} // namespace morvane
