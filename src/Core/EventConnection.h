#pragma once

#include "Core/HttpRequestParser.h"

#include <QByteArray>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/strand.hpp>

#include <cstdint>
#include <functional>
#include <memory>

namespace morvane {

/// One connection to the event server: it reads one request, and then is answered, or kept open
/// until somebody decides. Lives as long as anybody holds it or an operation of its is under way.
///
/// While it reads, it belongs to the queue that it was made with; once it is parked, to the queue
/// that it is watched on.
class EventConnection : public std::enable_shared_from_this<EventConnection> {
public:
    using Queue = asio::strand<asio::io_context::executor_type>;
    using Pointer = std::shared_ptr<EventConnection>;

    /// Called once, when the request is there or will never be; in the latter case the connection
    /// is closed by then and there is no request.
    using ReadHandler = std::function<void(const Pointer &, const HttpRequest *)>;

    EventConnection(asio::ip::tcp::socket socket, Queue queue, std::uint64_t serial);

    /// Position among all connections in the order of their coming.
    std::uint64_t serial() const { return m_serial; }

    void read(ReadHandler handler);

    /// Sends the whole answer, then closes, whether or not it could be sent. Without a body there
    /// is no content type either.
    void finish(std::string_view status, const std::optional<QByteArray> &body = std::nullopt);

    /// Tells, on the given queue, when the peer has gone. What it still sends is read and dropped.
    void watchForHangUp(const Queue &queue, std::function<void()> handler);

    /// Closes without an answer. No handler is called any more.
    void close();

private:
    void readAvailable();
    void waitForMore();
    bool takeBytes();
    void endRead(const HttpRequest *request);

    asio::ip::tcp::socket m_socket;
    Queue m_queue;
    std::uint64_t m_serial;
    std::string m_buffer;
    HttpRequestParser m_parser;
    ReadHandler m_readHandler;
    std::string m_reply;
};

} // namespace morvane
