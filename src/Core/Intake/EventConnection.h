#pragma once

#include "Core/Intake/HttpRequestParser.h"
#include "Core/Intake/Turns.h"

#include <QByteArray>
#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

/// One connection to the event server: it reads one request, and then is answered, or kept open
/// until somebody decides. Lives as long as anybody holds it or an operation of its is under way.
///
/// While it reads, it belongs to the queue that it was made with; once it is parked, to the queue
/// that it is watched on.
///
/// Most requests are there when their connection is, and their answer fits at once. So the socket
/// is read and written directly, and the context hears of it only when there is something to wait
/// for, which saves a third of a request's system calls.
class EventConnection : public std::enable_shared_from_this<EventConnection> {
public:
    using Queue = Turns::Queue;
    using Pointer = std::shared_ptr<EventConnection>;

    /// Called once, when the request is there or will never be; in the latter case the connection
    /// is closed by then and there is no request.
    using ReadHandler = std::function<void(const Pointer &, const HttpRequest *)>;

    /// What all connections of a server share; it outlives them.
    struct Surroundings {
        asio::io_context &context;
        Queue queue;
        Turns &turns;
        std::string_view token;
    };

    /// Takes over the descriptor of a connected socket that doesn't block.
    EventConnection(const Surroundings &surroundings, int descriptor, std::uint64_t serial);
    EventConnection(const EventConnection &) = delete;
    EventConnection &operator=(const EventConnection &) = delete;
    ~EventConnection();

    /// Position among all connections in the order of their coming, from 1.
    std::uint64_t serial() const { return m_serial; }

    void read(ReadHandler handler);

    /// True from `read` until its handler is called, or nobody waits for that any more.
    bool isReading() const { return m_readHandler != nullptr; }

    /// Whatever still comes is nobody's request; the connection only waits to be closed.
    void abandon() { m_readHandler = nullptr; }

    /// Sends the whole answer, then closes, whether or not it could be sent. Without a body there
    /// is no content type either.
    void finish(std::string_view status, const std::optional<QByteArray> &body = std::nullopt);

    /// Tells, on the given queue, when the peer has gone, or at once when the system won't tell us.
    /// What the peer still sends is dropped.
    void watchForHangUp(const Queue &queue, const std::function<void()> &handler);

    /// Closes without an answer. No handler is called any more.
    void close();

private:
    enum class Readiness { toRead, toWrite };

    void readAvailable();
    bool takeBytes();
    void waitForMore();
    void awaitTurn();
    void endRead(const HttpRequest *request);
    void sendRest();
    bool wait(Readiness readiness, std::function<void()> handler);

    const Surroundings &m_surroundings;
    Queue m_queue;    ///< that it belongs to
    int m_descriptor; ///< -1 once it is closed
    /// What waits for the descriptor, which belongs to it then.
    std::optional<asio::posix::stream_descriptor> m_waiter;
    std::uint64_t m_serial;
    std::size_t m_received = 0; ///< bytes of the request, kept or not
    bool m_awaitsTurn = false;
    HttpRequestParser m_parser;
    ReadHandler m_readHandler;
    std::string m_reply; ///< what is still to be sent
};

} // namespace morvane
