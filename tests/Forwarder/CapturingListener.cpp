#include "CapturingListener.h"

#include "Core/Intake/HttpRequestParser.h"
#include "Support/HttpClient.h"
#include "Support/WaitUntil.h"

#include <QByteArrayList>

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <set>
#include <sys/eventfd.h>
#include <sys/fsuid.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace morvane::tests {

namespace {

/// All headers, their names in lower case; the server's parser yields only those that it reads.
std::map<std::string, std::string> headersIn(const std::string &request) {
    std::map<std::string, std::string> result;
    const auto head = QByteArray::fromStdString(request.substr(0, request.find("\r\n\r\n")));
    for (const QByteArray &line : head.split('\n').mid(1)) {
        const QByteArray name = line.left(line.indexOf(": "));
        const QByteArray value = line.mid(name.size() + 2).split('\r').first();
        result[name.toLower().toStdString()] = value.toStdString();
    }
    return result;
}

} // namespace

std::vector<std::string> CapturedRequest::host() const {
    std::vector<std::string> result;
    const std::set<std::string> others{"x-hook-event",      "x-morvane-agent", "x-morvane-process",
                                       "x-morvane-program", "x-morvane-token", "x-tty"};
    for (const auto &[name, value] : headers) {
        if (name.starts_with("x-") && !others.contains(name))
            result.push_back(name + ": " + value);
    }
    return result;
}

CapturingListener::CapturingListener(std::optional<std::string> answer, const std::string &address,
                                     uid_t owner, std::optional<uid_t> acceptsFor)
    : m_answer(std::move(answer)), m_acceptsFor(acceptsFor.value_or(owner)),
      m_stopped(eventfd(0, EFD_CLOEXEC)) {
    // A socket belongs to the file system user id of the thread that creates it.
    setfsuid(owner);
    m_listener = {m_context, {asio::ip::make_address(address), 0}};
    setfsuid(geteuid());
    fcntl(m_listener.native_handle(), F_SETFD, FD_CLOEXEC);
    m_port = m_listener.local_endpoint().port();
    m_thread = std::thread([this] { serve(); });
}

CapturingListener::~CapturingListener() {
    eventfd_write(m_stopped, 1);
    m_thread.join();
    close(m_stopped);
}

CapturedRequest CapturingListener::take() {
    CapturedRequest request;
    waitUntil([&] {
        const std::lock_guard lock(m_mutex);
        const bool isThere = !m_requests.empty();
        if (isThere) {
            request = std::move(m_requests.front());
            m_requests.pop_front();
        }
        return isThere;
    });
    return request;
}

bool CapturingListener::awaitConnection() {
    const bool isThere = waitUntil([this] { return m_accepted > 0; });
    --m_accepted;
    return isThere;
}

bool CapturingListener::hasHeardNothing() {
    const std::string question = "GET /heard HTTP/1.1";
    HttpClient client(m_port);
    return client.send(question + "\r\n\r\n") && take().requestLine == question;
}

bool CapturingListener::awaitHangUp() {
    return waitUntil([this] { return m_hungUp.load(); });
}

void CapturingListener::serve() {
    setfsuid(m_acceptsFor);
    std::array<pollfd, 2> watched{
        {{m_listener.native_handle(), POLLIN, 0}, {m_stopped, POLLIN, 0}}};
    while (poll(watched.data(), watched.size(), -1) > 0 && watched[1].revents == 0) {
        const int connection = accept4(m_listener.native_handle(), nullptr, nullptr, SOCK_CLOEXEC);
        ++m_accepted;
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
        HttpRequestParser parser(std::nullopt);
        if (parser.take(bytes) != HttpRequestParser::Status::complete)
            continue;
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back({bytes.substr(0, bytes.find("\r\n")), headersIn(bytes),
                                  std::string(parser.request().body)});
        }
        if (m_answer) {
            send(connection, m_answer->data(), m_answer->size(), MSG_NOSIGNAL);
            return;
        }
    }
    m_hungUp = true;
}

std::string response(const std::string &status, const std::string &body) {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

std::uint16_t portWithoutServer() {
    return CapturingListener(std::nullopt).port();
}

} // namespace morvane::tests
