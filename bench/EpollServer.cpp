#include "EpollServer.h"

#include <array>
#include <charconv>
#include <netinet/in.h>
#include <string_view>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace morvane {

namespace {

constexpr std::string_view answer =
    "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";

bool isComplete(std::string_view request) {
    constexpr std::string_view lengthName = "\r\nContent-Length: ";
    const size_t end = request.find("\r\n\r\n");
    if (end == std::string_view::npos)
        return false;
    const std::string_view head = request.substr(0, end);
    size_t length = 0;
    if (const size_t found = head.find(lengthName); found != std::string_view::npos)
        std::from_chars(head.data() + found + lengthName.size(), head.data() + end, length);
    return request.size() - end - 4 >= length;
}

} // namespace

EpollServer::EpollServer()
    : m_epoll(epoll_create1(EPOLL_CLOEXEC)),
      m_listener(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)),
      m_stopped(eventfd(0, EFD_CLOEXEC)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof address;
    if (bind(m_listener, generic, size) == 0 && listen(m_listener, SOMAXCONN) == 0 &&
        getsockname(m_listener, generic, &size) == 0)
        m_port = ntohs(address.sin_port);
    watch(m_listener);
    watch(m_stopped);
}

EpollServer::~EpollServer() {
    for (const auto &[connection, request] : m_requests)
        close(connection);
    close(m_stopped);
    close(m_listener);
    close(m_epoll);
}

void EpollServer::run() {
    std::array<epoll_event, 64> events{};
    for (;;) {
        const int count = epoll_wait(m_epoll, events.data(), static_cast<int>(events.size()), -1);
        for (int i = 0; i < count; ++i) {
            const int descriptor = events[static_cast<size_t>(i)].data.fd;
            if (descriptor == m_stopped)
                return;
            if (descriptor == m_listener)
                accept();
            else
                read(descriptor);
        }
    }
}

void EpollServer::stop() {
    eventfd_write(m_stopped, 1);
}

void EpollServer::accept() {
    const int connection = accept4(m_listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (connection < 0)
        return;
    m_requests[connection].clear();
    watch(connection);
}

void EpollServer::read(int connection) {
    std::array<char, 131072> bytes; // NOLINT: filled by the read
    const ssize_t size = recv(connection, bytes.data(), bytes.size(), 0);
    std::string &request = m_requests[connection];
    if (size > 0) {
        request.append(bytes.data(), static_cast<size_t>(size));
        if (!isComplete(request))
            return;
        send(connection, answer.data(), answer.size(), MSG_NOSIGNAL);
    }
    m_requests.erase(connection);
    close(connection);
}

void EpollServer::watch(int descriptor) const {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = descriptor;
    epoll_ctl(m_epoll, EPOLL_CTL_ADD, descriptor, &event);
}

} // namespace morvane
