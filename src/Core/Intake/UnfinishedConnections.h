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

/// The connections of a server whose request hasn't arrived whole. Each of them has half a minute
/// for it, and if there are too many the oldest is given up.
///
/// Used only on the given queue, on which the connections are read. The queue, the turns and the
/// timers must outlive it.
class UnfinishedConnections {
public:
    using Connection = EventConnection::Pointer;

    /// Keeps at most `limit` connections, and leaves open at most as many that were given up.
    UnfinishedConnections(EventConnection::Queue queue, Turns &turns, Scheduler &timers,
                          std::size_t limit)
        : m_queue(std::move(queue)), m_turns(turns), m_timers(timers), m_limit(limit) {}

    /// Connections must be added in the order of arrival.
    void add(const Connection &connection);

    /// Does nothing if it isn't among them.
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
    std::size_t m_closed = 0; ///< cost of those closed in a row so far, in bytes read
};

} // namespace morvane
