#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace morvane::tests {

struct CapturedRequest {
    /// The sorted headers that describe the sender's terminal or say that a decision is awaited.
    /// The terminal's device and the agent depend on where the tests run and are left out.
    [[nodiscard]] std::vector<std::string> host() const;

    std::string requestLine;
    /// By lower-case name.
    std::map<std::string, std::string> headers;
    std::string body;
};

/// Stands in for the server on a free port: keeps the requests, answers each with the given bytes
/// and closes, or holds it until its peer hangs up. A thread of its own does the work.
class CapturingListener {
public:
    /// Without an answer every request is held. Only root can let the listening socket, or the
    /// connections that it accepts, belong to another user.
    explicit CapturingListener(std::optional<std::string> answer,
                               const std::string &address = "127.0.0.1", uid_t owner = geteuid(),
                               std::optional<uid_t> acceptsFor = {});
    ~CapturingListener();

    [[nodiscard]] std::uint16_t port() const { return m_port; }
    /// The earliest request not yet taken; an empty one after a generous wait.
    [[nodiscard]] CapturedRequest take();
    /// Whether one more connection was accepted within a generous wait.
    [[nodiscard]] bool awaitConnection();
    /// Whether no request has come except the one that this call sends to find out. Needs an
    /// answer.
    [[nodiscard]] bool hasHeardNothing();
    /// Whether the peer of a held request hung up within a generous wait.
    [[nodiscard]] bool awaitHangUp();

private:
    void serve();
    void handle(int connection);

    const std::optional<std::string> m_answer;
    const uid_t m_acceptsFor;
    int m_stopped;
    asio::io_context m_context;
    asio::ip::tcp::acceptor m_listener{m_context};
    std::uint16_t m_port = 0;
    std::mutex m_mutex;
    std::deque<CapturedRequest> m_requests;
    std::atomic<int> m_accepted = 0; ///< connections that awaitConnection hasn't reported
    std::atomic<bool> m_hungUp = false;
    std::thread m_thread;
};

/// A complete response as the server writes it.
[[nodiscard]] std::string response(const std::string &status, const std::string &body);

/// A port on which nothing listens.
[[nodiscard]] std::uint16_t portWithoutServer();

} // namespace morvane::tests
