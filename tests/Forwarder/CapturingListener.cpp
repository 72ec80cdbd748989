#include "CapturingListener.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace morvane::tests {

namespace {

constexpr std::chrono::seconds patience{20};

std::optional<CapturedRequest> parsed(const std::string &bytes) {
    const size_t end = bytes.find("\r\n\r\n");
    if (end == std::string::npos)
        return {};
    CapturedRequest request;
    size_t begin = bytes.find("\r\n");
    request.requestLine = bytes.substr(0, begin);
    while (begin < end) {
        const size_t next = bytes.find("\r\n", begin + 2);
        const std::string line = bytes.substr(begin + 2, next - begin - 2);
        const size_t colon = line.find(": ");
        std::string name = line.substr(0, colon);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        request.headers[name] = colon == std::string::npos ? "" : line.substr(colon + 2);
        begin = next;
    }
    const size_t length = std::stoul(request.headers["content-length"]);
    request.body = bytes.substr(end + 4);
    return request.body.size() < length ? std::nullopt : std::optional{request};
}

} // namespace

CapturingListener::CapturingListener(std::optional<std::string> answer)
    : m_answer(std::move(answer)), m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
      m_stopped(eventfd(0, EFD_CLOEXEC)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof address;
    if (bind(m_listener, generic, size) == 0 && listen(m_listener, 16) == 0 &&
        getsockname(m_listener, generic, &size) == 0)
        m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { serve(); });
}

CapturingListener::~CapturingListener() {
    eventfd_write(m_stopped, 1);
    m_thread.join();
    close(m_listener);
    close(m_stopped);
}

std::optional<CapturedRequest> CapturingListener::take() {
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, patience, [this] { return !m_requests.empty(); }))
        return std::nullopt;
    CapturedRequest request = std::move(m_requests.front());
    m_requests.pop_front();
    return request;
}

bool CapturingListener::awaitHangUp() {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, patience, [this] { return m_hungUp; });
}

void CapturingListener::serve() {
    std::array<pollfd, 2> watched{{{m_listener, POLLIN, 0}, {m_stopped, POLLIN, 0}}};
    while (poll(watched.data(), watched.size(), -1) > 0 && watched[1].revents == 0) {
        const int connection = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        handle(connection);
        close(connection);
    }
}

void CapturingListener::handle(int connection) {
    std::string bytes;
    std::array<char, 65536> piece{};
    std::array<pollfd, 2> watched{{{connection, POLLIN, 0}, {m_stopped, POLLIN, 0}}};
    while (poll(watched.data(), watched.size(), -1) > 0 && watched[1].revents == 0) {
        const ssize_t size = recv(connection, piece.data(), piece.size(), 0);
        if (size <= 0)
            break;
        bytes.append(piece.data(), static_cast<size_t>(size));
        const std::optional<CapturedRequest> request = parsed(bytes);
        if (!request)
            continue;
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(*request);
        }
        m_changed.notify_all();
        if (m_answer) {
            send(connection, m_answer->data(), m_answer->size(), MSG_NOSIGNAL);
            return;
        }
    }
    {
        const std::lock_guard lock(m_mutex);
        m_hungUp = true;
    }
    m_changed.notify_all();
}

std::string response(const std::string &status, const std::string &body) {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

std::uint16_t portWithoutServer() {
    return CapturingListener(std::nullopt).port();
}

} // namespace morvane::tests
