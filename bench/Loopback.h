#pragma once

#include <arpa/inet.h>
#include <cstdint>
#include <netinet/in.h>
#include <sys/socket.h>
#include <tuple>

namespace morvane {

/// A non-blocking socket that is connecting to this port of 127.0.0.1. A failure shows when it is
/// written to; -1 if no descriptor is left.
inline int connectToLoopback(std::uint16_t port) {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    std::ignore = connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    return descriptor;
}

} // namespace morvane
