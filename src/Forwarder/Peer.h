#pragma once

#include <cstdint>

namespace morvane {

/// Whether the socket at the other end of this connection to 127.0.0.1:port belongs to the user
/// that this process runs as. If not, or if the kernel does not tell, nothing may be sent: a token
/// that has been sent is no longer secret.
[[nodiscard]] bool isPeerOurs(int connection, std::uint16_t port);

} // namespace morvane
