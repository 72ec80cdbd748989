#pragma once

#include "Core/Intake/EventConnection.h"
#include "Platform/Scheduler.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <utility>

namespace morvane {

/// The connections of a server whose request isn't there yet. Each of them has half a minute for
/// it, and of too many the oldest is given up.
///
/// Used on the given queue alone, on which the connections are read. That, the turns and the timers
/// outlive it.
class UnfinishedConnections {
public:
    using Connection = EventConnection::Pointer;

    /// No more than the limit are kept, and of those given up no more than that are still open.
    UnfinishedConnections(EventConnection::Queue queue, Turns &turns, Scheduler &timers,
                          std::size_t limit)
        : m_queue(std::move(queue)), m_turns(turns), m_timers(timers), m_limit(limit) {}

    /// They are added in the order of their coming.
    void add(const Connection &connection);

    /// Nothing happens where it isn't among them.
    void remove(const Connection &connection) { m_connections.erase(connection->serial()); }

private:
    struct Unfinished {
        Connection connection;
        Date deadline;
    };

    void armDeadline();
    void closeOverdue();
    void giveUpOldest();
    void awaitClosing();
    void closeGivenUp();

    EventConnection::Queue m_queue;
    Turns &m_turns;
    Scheduler &m_timers;
    const std::size_t m_limit;
    std::map<std::uint64_t, Unfinished> m_connections; ///< by age, the oldest first
    std::optional<Task> m_deadline;                    ///< of the oldest; while there are any
    std::deque<Connection> m_givenUp;                  ///< to be closed, the oldest first
    std::size_t m_closed = 0; ///< what those have counted for that were closed in a row, in bytes
};

} // namespace morvane
