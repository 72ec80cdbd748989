#pragma once

#include "Platform/Descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// A connection to a server on the loopback address that sends just the bytes it is told to. It
/// blocks, for at most half a minute.
class HttpClient {
public:
    explicit HttpClient(std::uint16_t port);

    /// True when all bytes were taken; a peer that has closed takes none.
    bool send(std::string_view bytes);

    /// Tells the peer that nothing more will be sent.
    void endSending();

    /// Everything received until the peer closes. The test fails if the peer doesn't close in time,
    /// or was never there.
    std::string receiveAll();

    void hangUp() { m_connection.reset(); }

private:
    int descriptor() const { return m_connection ? m_connection->number() : -1; }

    std::optional<Descriptor> m_connection;
};

using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

/// The text of a request with the right length.
std::string httpPost(std::string_view path, const HttpHeaders &headers, std::string_view body);

/// Sends one request and returns the whole answer.
std::string httpExchange(std::uint16_t port, std::string_view request);

/// The answer's body.
std::string httpBody(std::string_view answer);

} // namespace morvane
