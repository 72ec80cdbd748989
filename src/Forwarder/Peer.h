#pragma once

#include <cstdint>

namespace morvane {

/// Whether the socket at the other end of this connection to 127.0.0.1:port belongs to the user
/// that this process runs as. Nothing is to be said to another one's, nor where the kernel does
/// not tell: a token is secret no more once it has been said.
[[nodiscard]] bool isPeerOurs(int connection, std::uint16_t port);

} // namespace morvane
