#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

namespace morvane {

/// The least that a server can do, as the measure for others: it reads a request with its
/// Content-Length, answers an empty "200 OK" and closes. Owned by the measuring program; run()
/// takes over the thread that calls it.
class EpollServer {
public:
    /// Binds a free port of 127.0.0.1; a failure shows in port().
    EpollServer();
    ~EpollServer();
    EpollServer(const EpollServer &) = delete;
    EpollServer &operator=(const EpollServer &) = delete;

    /// 0 when nothing could be bound.
    [[nodiscard]] std::uint16_t port() const { return m_port; }

    /// Serves until stop().
    void run();
    /// May be called from any thread, also before run().
    void stop();

private:
    void accept();
    void read(int connection);
    void watch(int descriptor) const;

    int m_epoll;
    int m_listener;
    int m_stopped;
    std::uint16_t m_port = 0;
    std::unordered_map<int, std::string> m_requests;
};

} // namespace morvane
