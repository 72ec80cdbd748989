#pragma once

#include "Platform/Result.h"

#include <QByteArray>

/// What a file carries beside its content, owner and permission bits: its access list, a person's
/// own attributes, a security label. Safe from any thread.
namespace morvane::FileAttributes {

/// Copies the attributes of the file at `from`, a path in the system's encoding, to the open file
/// `to`, in place of those that its folder gave it. Fails with the system's reason if one that a
/// person would miss can't be copied; a security label is only tried.
Result<void> copy(const QByteArray &from, int to);

} // namespace morvane::FileAttributes
