#pragma once

#include "Platform/Descriptor.h"

#include <QString>

/// Sockets of this machine that are known by their paths, for streams. What cannot be had is a
/// negative number, and errno says why, with ENAMETOOLONG for a path that no socket can have.
/// Descriptors don't wait and aren't inherited. Safe from any thread.
namespace morvane::UnixSockets {

/// To whoever listens; EAGAIN where too many wait for that already.
Descriptor connectTo(const QString &path);

/// In the place of whatever socket has that path; only this user can connect.
Descriptor listenAt(const QString &path);

} // namespace morvane::UnixSockets
