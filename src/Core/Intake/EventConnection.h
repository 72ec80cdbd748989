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
/// until somebody decides. Lives as long as anybody holds it or one of its operations is under way.
///
/// While it reads, it belongs to the queue that it was made with; once it is parked, to the queue
/// that it is watched on.
///
/// Most requests arrive together with their connection, and their answer can be sent at once. So
/// the socket is read and written directly, and registered with the context only when there is
/// something to wait for. This saves a third of a request's system calls.
class EventConnection : public std::enable_shared_from_this<EventConnection> {
public:
    using Queue = Turns::Queue;
    using Pointer = std::shared_ptr<EventConnection>;

    /// Called once: with the request, or with null when none will come and the connection is
    /// closed.
    using ReadHandler = std::function<void(const Pointer &, const HttpRequest *)>;

    /// What all connections of a server share; it must outlive them.
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

    /// Position among all connections in the order of arrival, from 1.
    std::uint64_t serial() const { return m_serial; }

    void read(ReadHandler handler);

    /// True from `read` until its handler is called or dropped.
    bool isReading() const { return m_readHandler != nullptr; }

    /// Drops the handler of `read`: what still arrives is ignored until the connection is closed.
    void abandon() { m_readHandler = nullptr; }

    /// Sends the whole answer, then closes, whether or not it could be sent. Without a body there
    /// is no content type either.
    void finish(std::string_view status, const std::optional<QByteArray> &body = std::nullopt);

    /// Calls the handler on the given queue when the peer has gone, or at once if the system can't
    /// watch it. What the peer still sends is dropped.
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
    Queue m_queue;    ///< the one that it belongs to
    int m_descriptor; ///< -1 once it is closed
    /// Waits for the descriptor, and owns it while set.
    std::optional<asio::posix::stream_descriptor> m_waiter;
    std::uint64_t m_serial;
    std::size_t m_received = 0; ///< bytes of the request, kept or not
    bool m_awaitsTurn = false;
    HttpRequestParser m_parser;
    ReadHandler m_readHandler;
    std::string m_reply; ///< what is still to be sent
};

} // namespace morvane
