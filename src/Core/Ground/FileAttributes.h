#pragma once

#include "Platform/Result.h"

#include <QByteArray>

/// What a file carries beside its content, owner and permission bits: its access list, a person's
/// own attributes, a security label. Safe from any thread.
namespace morvane::FileAttributes {

/// Gives an open file those of another one, in place of the ones that its folder has given it.
/// Fails with the system's reason for one that a person would miss; labels are only tried. Paths
/// are the system's.
Result<void> copy(const QByteArray &from, int to);

} // namespace morvane::FileAttributes
