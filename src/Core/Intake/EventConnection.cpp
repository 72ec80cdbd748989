#include "Core/Intake/EventConnection.h"

#include <asio/bind_executor.hpp>

#include <array>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>
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

bool wouldBlock(int error) {
    return error == EAGAIN || error == EINTR;
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

EventConnection::EventConnection(asio::io_context &context, int descriptor, Queue queue,
                                 std::uint64_t serial)
    : m_context(context), m_descriptor(descriptor), m_queue(std::move(queue)), m_serial(serial) {}

EventConnection::~EventConnection() {
    close();
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
    const ssize_t count = ::recv(m_descriptor, room.data(), room.size(), 0);
    if (count > 0) {
        m_buffer.append(room.data(), static_cast<std::size_t>(count));
        return true;
    }
    if (count < 0 && wouldBlock(errno)) {
        wait(Readiness::toRead, m_queue, [this] { readAvailable(); });
    } else {
        endRead(nullptr);
    }
    return false;
}

void EventConnection::endRead(const HttpRequest *request) {
    const auto handler = std::exchange(m_readHandler, nullptr);
    if (!request) {
        close();
    }
    if (handler) {
        handler(shared_from_this(), request);
    }
}

void EventConnection::finish(std::string_view status, const std::optional<QByteArray> &body) {
    m_reply = replyHead(status, body);
    if (body) {
        m_reply.append(body->constData(), static_cast<std::size_t>(body->size()));
    }
    sendRest();
}

void EventConnection::sendRest() {
    const ssize_t count = ::send(m_descriptor, m_reply.data(), m_reply.size(), MSG_NOSIGNAL);
    if (count > 0) {
        m_reply.erase(0, static_cast<std::size_t>(count));
    }
    const bool mayGoOn = count > 0 || (count < 0 && wouldBlock(errno));
    if (m_reply.empty() || !mayGoOn) {
        close();
    } else {
        wait(Readiness::toWrite, m_queue, [this] { sendRest(); });
    }
}

void EventConnection::watchForHangUp(const Queue &queue, std::function<void()> handler) {
    wait(Readiness::toRead, queue, [this, queue, handler = std::move(handler)] {
        auto &room = readRoom();
        const ssize_t count = ::recv(m_descriptor, room.data(), room.size(), 0);
        if (count > 0 || (count < 0 && wouldBlock(errno))) {
            watchForHangUp(queue, handler);
        } else {
            handler();
        }
    });
}

/// The handler isn't called once the connection is closed, and the connection lives until then.
void EventConnection::wait(Readiness readiness, const Queue &queue, std::function<void()> handler) {
    if (!m_waiter) {
        asio::error_code error;
        m_waiter.emplace(m_context);
        m_waiter->assign(m_descriptor, error);
        if (error) {
            // The system has no room left to wait for it; the descriptor is still ours.
            m_waiter.reset();
            endRead(nullptr);
            return;
        }
    }
    const auto ready = [self = shared_from_this(),
                        handler = std::move(handler)](const asio::error_code &error) {
        if (!error && self->m_descriptor >= 0) {
            handler();
        }
    };
    m_waiter->async_wait(readiness == Readiness::toRead ? asio::posix::descriptor_base::wait_read
                                                        : asio::posix::descriptor_base::wait_write,
                         asio::bind_executor(queue, ready));
}

void EventConnection::close() {
    const int descriptor = std::exchange(m_descriptor, -1);
    m_readHandler = nullptr;
    if (m_waiter) {
        asio::error_code ignored;
        m_waiter->close(ignored);
    } else if (descriptor >= 0) {
        ::close(descriptor);
    }
}

} // namespace morvane
