#include "Core/EventConnection.h"

#include <asio/bind_executor.hpp>
#include <asio/buffer.hpp>
#include <asio/write.hpp>

#include <array>
#include <utility>

namespace morvane {

namespace {

constexpr std::size_t maxReadSize = 131072;

/// A request that is still unfinished beyond this many bytes is given up. A complete one is taken
/// whatever its size.
constexpr std::size_t maxUnfinishedSize = 1'000'000;

/// Every connection of a thread reads through the same room, one after the other, so that none
/// has to hold a buffer of the largest size.
std::array<char, maxReadSize> &readRoom() {
    static thread_local std::array<char, maxReadSize> room;
    return room;
}

std::string replyHead(std::string_view status, const std::optional<QByteArray> &body) {
    std::string head("HTTP/1.1 ");
    head.append(status);
    head.append("\r\nContent-Length: ").append(std::to_string(body ? body->size() : 0));
    head.append(body ? "\r\nContent-Type: application/json\r\n" : "\r\n");
    head.append("Connection: close\r\n\r\n");
    return head;
}

} // namespace

EventConnection::EventConnection(asio::ip::tcp::socket socket, Queue queue, std::uint64_t serial)
    : m_socket(std::move(socket)), m_queue(std::move(queue)), m_serial(serial) {
    asio::error_code ignored;
    m_socket.non_blocking(true, ignored);
}

void EventConnection::read(ReadHandler handler) {
    m_readHandler = std::move(handler);
    readAvailable();
}

/// Reads without waiting first: with most requests all bytes are there when the connection is.
void EventConnection::readAvailable() {
    while (takeBytes()) {
        switch (m_parser.parse(m_buffer)) {
        case HttpRequestParser::Status::complete:
            endRead(&m_parser.request());
            return;
        case HttpRequestParser::Status::broken:
            endRead(nullptr);
            return;
        case HttpRequestParser::Status::unfinished:
        case HttpRequestParser::Status::hopeless:
            break;
        }
        if (m_buffer.size() > maxUnfinishedSize) {
            endRead(nullptr);
            return;
        }
    }
}

/// True when bytes have come. Otherwise the connection waits for more by now, or has ended.
bool EventConnection::takeBytes() {
    auto &room = readRoom();
    asio::error_code error;
    const std::size_t count = m_socket.read_some(asio::buffer(room), error);
    m_buffer.append(room.data(), count);
    if (error == asio::error::would_block) {
        waitForMore();
    } else if (error) {
        endRead(nullptr);
    }
    return !error;
}

void EventConnection::waitForMore() {
    const auto readable = [self = shared_from_this()](const asio::error_code &error) {
        if (!error && self->m_readHandler) {
            self->readAvailable();
        }
    };
    m_socket.async_wait(asio::ip::tcp::socket::wait_read, asio::bind_executor(m_queue, readable));
}

void EventConnection::endRead(const HttpRequest *request) {
    if (!request) {
        asio::error_code ignored;
        m_socket.close(ignored);
    }
    if (const auto handler = std::exchange(m_readHandler, nullptr)) {
        handler(shared_from_this(), request);
    }
}

void EventConnection::finish(std::string_view status, const std::optional<QByteArray> &body) {
    m_reply = replyHead(status, body);
    if (body) {
        m_reply.append(body->constData(), static_cast<std::size_t>(body->size()));
    }
    // Nearly every answer fits at once, and the agent waits for the end of it.
    asio::error_code error;
    const std::size_t sent = m_socket.write_some(asio::buffer(m_reply), error);
    if (sent == m_reply.size() || (error && error != asio::error::would_block)) {
        close();
        return;
    }
    asio::async_write(
        m_socket, asio::buffer(m_reply) + sent,
        [self = shared_from_this()](const asio::error_code &, std::size_t) { self->close(); });
}

void EventConnection::watchForHangUp(const Queue &queue, std::function<void()> handler) {
    const auto readable = [self = shared_from_this(), queue,
                           handler = std::move(handler)](const asio::error_code &waitError) {
        if (waitError || !self->m_socket.is_open()) {
            return;
        }
        asio::error_code error;
        self->m_socket.read_some(asio::buffer(readRoom()), error);
        if (error && error != asio::error::would_block) {
            handler();
        } else {
            self->watchForHangUp(queue, handler);
        }
    };
    m_socket.async_wait(asio::ip::tcp::socket::wait_read, asio::bind_executor(queue, readable));
}

void EventConnection::close() {
    m_readHandler = nullptr;
    asio::error_code ignored;
    m_socket.close(ignored);
}

} // namespace morvane
