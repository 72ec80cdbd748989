#pragma once

#include "Platform/Descriptor.h"

#include <QString>

/// Unix domain stream sockets with a path. Safe from any thread.
namespace morvane::UnixSockets {

/// A non-blocking, close-on-exec socket, or why there is none.
struct Socket {
    Descriptor descriptor;
    int error = 0; ///< if there is none; ENAMETOOLONG for a path too long for a socket
};

/// Connects to whoever listens; EAGAIN if the listener's backlog is full.
Socket connectTo(const QString &path);

/// Listens at the path, replacing any file there; only this user can connect.
Socket listenAt(const QString &path);

} // namespace morvane::UnixSockets
