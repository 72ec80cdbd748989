#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace morvane {

/// A connection to a server on the loopback address that sends just the bytes it is told to. It
/// blocks, for at most half a minute.
class HttpClient {
public:
    explicit HttpClient(std::uint16_t port);
    HttpClient(HttpClient &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    HttpClient &operator=(HttpClient &&) = delete;
    HttpClient(const HttpClient &) = delete;
    HttpClient &operator=(const HttpClient &) = delete;
    ~HttpClient();

    /// True when all bytes were taken; a peer that has closed takes none.
    bool send(std::string_view bytes);

    /// Tells the peer that nothing more will be sent.
    void endSending();

    /// All that comes until the peer closes. The test fails when it doesn't close in time, or was
    /// never there.
    std::string receiveAll();

    void hangUp();

private:
    int m_descriptor;
};

using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

/// The text of a request with the right length.
std::string httpPost(std::string_view path, const HttpHeaders &headers, std::string_view body);

/// Sends one request and returns the whole answer.
std::string httpExchange(std::uint16_t port, std::string_view request);

/// What stands behind the answer's head.
std::string httpBody(std::string_view answer);

} // namespace morvane
