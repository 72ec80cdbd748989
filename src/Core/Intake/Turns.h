#pragma once

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>
#include <asio/strand.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>

namespace morvane {

/// Schedules work that is too much to do at once: whoever has taken least goes next, and after each
/// there is a pause of a millisecond, by the machine's clock and no scheduler's. So nobody holds up
/// the others by taking much, and all together leave the processors to those who need no turn. Used
/// on its queue only, and must live as long as that runs anything.
class Turns {
public:
    using Queue = asio::strand<asio::io_context::executor_type>;

    explicit Turns(Queue queue) : m_queue(std::move(queue)), m_pause(m_queue) {}

    /// Of two that have taken the same, the one with the lower serial number goes first. Nobody may
    /// wait twice at once.
    struct Place {
        std::size_t taken = 0; ///< so far, in any unit that all share
        std::uint64_t serial = 0;

        bool operator<(const Place &other) const {
            return taken < other.taken || (taken == other.taken && serial < other.serial);
        }
    };

    /// Calls the action soon, but never before this returns.
    void await(Place place, std::function<void()> action);

    /// Drops the action that waits at this place, if any.
    void leave(Place place) { m_waiting.erase(place); }

private:
    void takeNext();

    Queue m_queue;
    asio::steady_timer m_pause;
    std::map<Place, std::function<void()>> m_waiting;
    bool m_isUnderWay = false;
};

} // namespace morvane
