#include "Support/HttpClient.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/time.h>

namespace morvane {

HttpClient::HttpClient(std::uint16_t port)
    : m_connection(std::in_place, socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const timeval limit{30, 0};
    setsockopt(descriptor(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    setsockopt(descriptor(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(descriptor(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        hangUp();
    }
}

bool HttpClient::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::send(descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

void HttpClient::endSending() {
    shutdown(descriptor(), SHUT_WR);
}

std::string HttpClient::receiveAll() {
    std::string result;
    std::array<char, 4096> room;
    while (const ssize_t count = recv(descriptor(), room.data(), room.size(), 0)) {
        if (count > 0) {
            result.append(room.data(), static_cast<std::size_t>(count));
        } else if (errno == ECONNRESET) {
            break;
        } else if (errno != EINTR) {
            // A timeout isn't taken for a close, which often is just what the test expects.
            ADD_FAILURE() << "not closed in time: " << std::strerror(errno) << " after " << result;
            break;
        }
    }
    return result;
}

std::string httpPost(std::string_view path, const HttpHeaders &headers, std::string_view body) {
    std::string request = "POST " + std::string(path) + " HTTP/1.1\r\n";
    for (const auto &[name, value] : headers) {
        request += name + ": " + value + "\r\n";
    }
    request += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    return request.append(body);
}

std::string httpExchange(std::uint16_t port, std::string_view request) {
    HttpClient client(port);
    client.send(request);
    return client.receiveAll();
}

std::string httpBody(std::string_view answer) {
    const auto end = answer.find("\r\n\r\n");
    return std::string(end == answer.npos ? std::string_view() : answer.substr(end + 4));
}

} // namespace morvane
