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

/// Bytes read in one go before the token is known: more than a head of ours ever has, and few
/// enough that others have their turn soon.
constexpr std::size_t maxStrangerRead = 4096;

/// A request that is still unfinished beyond this many bytes is given up. The read that goes beyond
/// may be the one that completes it.
constexpr std::size_t maxUnfinishedSize = 1'000'000;

/// All connections of a thread read through one buffer, one after the other, so that none has to
/// hold its own of the largest size. It is allocated at first use: a plain thread-local array would
/// take its room in every thread of the program.
std::array<char, maxReadSize> &readRoom() {
    using Room = std::array<char, maxReadSize>;
    static thread_local const auto room = std::make_unique_for_overwrite<Room>();
    return *room;
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

EventConnection::EventConnection(const Surroundings &surroundings, int descriptor,
                                 std::uint64_t serial)
    : m_surroundings(surroundings), m_queue(surroundings.queue), m_descriptor(descriptor),
      m_serial(serial), m_parser(surroundings.token) {}

EventConnection::~EventConnection() {
    close();
}

void EventConnection::read(ReadHandler handler) {
    m_readHandler = std::move(handler);
    readAvailable();
}

/// Reads without waiting first: most requests arrive whole together with their connection. A peer
/// that hasn't shown the token gets one read a turn.
void EventConnection::readAvailable() {
    do {
        if (!takeBytes()) {
            return;
        }
    } while (m_parser.isAuthorised());
    awaitTurn();
}

/// False once the connection waits for more, or has ended.
bool EventConnection::takeBytes() {
    auto &room = readRoom();
    const bool isCheap = m_parser.isAuthorised() || m_parser.isCounting();
    const ssize_t count = ::recv(m_descriptor, room.data(), isCheap ? room.size() : maxStrangerRead,
                                 m_parser.isCounting() ? MSG_TRUNC : 0);
    if (count < 0 && wouldBlock(errno)) {
        waitForMore();
        return false;
    }
    if (count <= 0) {
        endRead(nullptr);
        return false;
    }
    m_received += static_cast<std::size_t>(count);
    const auto status = m_parser.take({room.data(), static_cast<std::size_t>(count)});
    if (status == HttpRequestParser::Status::complete) {
        endRead(&m_parser.request());
        return false;
    }
    if (status == HttpRequestParser::Status::broken || m_received > maxUnfinishedSize) {
        endRead(nullptr);
        return false;
    }
    return true;
}

void EventConnection::waitForMore() {
    const auto ready = [this] {
        // First bytes are read in the order of arrival: clients that don't wait for their answer
        // count on it.
        if (m_received == 0 || m_parser.isAuthorised()) {
            readAvailable();
        } else {
            awaitTurn();
        }
    };
    if (!wait(Readiness::toRead, ready)) {
        endRead(nullptr);
    }
}

/// Until then arriving bytes don't wake the thread.
void EventConnection::awaitTurn() {
    if (m_waiter) {
        m_waiter->release();
        m_waiter.reset();
    }
    m_awaitsTurn = true;
    m_surroundings.turns.await({m_received, m_serial}, [weak = weak_from_this()] {
        if (const Pointer self = weak.lock()) {
            self->m_awaitsTurn = false;
            self->readAvailable();
        }
    });
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
    const bool hasEnded = m_reply.empty() || !mayGoOn;
    if (hasEnded || !wait(Readiness::toWrite, [this] { sendRest(); })) {
        close();
    }
}

void EventConnection::watchForHangUp(const Queue &queue, const std::function<void()> &handler) {
    m_queue = queue;
    const auto ready = [this, queue, handler] {
        auto &room = readRoom();
        const ssize_t count = ::recv(m_descriptor, room.data(), room.size(), MSG_TRUNC);
        if (count > 0 || (count < 0 && wouldBlock(errno))) {
            watchForHangUp(queue, handler);
        } else {
            handler();
        }
    };
    if (!wait(Readiness::toRead, ready)) {
        handler();
    }
}

/// The connection lives until the wait is over; if it has been closed by then, the handler isn't
/// called. False when the system has no room left to watch the descriptor, which then stays ours.
bool EventConnection::wait(Readiness readiness, std::function<void()> handler) {
    if (!m_waiter) {
        asio::error_code error;
        m_waiter.emplace(m_surroundings.context);
        m_waiter->assign(m_descriptor, error);
        if (error) {
            m_waiter.reset();
            return false;
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
                         asio::bind_executor(m_queue, ready));
    return true;
}

void EventConnection::close() {
    const int descriptor = std::exchange(m_descriptor, -1);
    m_readHandler = nullptr;
    if (std::exchange(m_awaitsTurn, false)) {
        m_surroundings.turns.leave({m_received, m_serial});
    }
    if (m_waiter) {
        asio::error_code ignored;
        m_waiter->close(ignored);
    } else if (descriptor >= 0) {
        ::close(descriptor);
    }
}

} // namespace morvane
