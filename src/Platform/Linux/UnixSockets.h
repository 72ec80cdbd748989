#pragma once

#include "Platform/Descriptor.h"

#include <QString>

/// Sockets of this machine that are known by their paths, for streams. Safe from any thread.
namespace morvane::UnixSockets {

/// A socket that doesn't wait and isn't inherited, or why there is none.
struct Socket {
    Descriptor descriptor;
    int error = 0; ///< where there is none; ENAMETOOLONG for a path that no socket can have
};

/// To whoever listens; EAGAIN where too many wait for that already.
Socket connectTo(const QString &path);

/// In the place of whatever socket has that path; only this user can connect.
Socket listenAt(const QString &path);

} // namespace morvane::UnixSockets
