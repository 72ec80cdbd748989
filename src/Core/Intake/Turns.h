#pragma once

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>
#include <asio/strand.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>

namespace morvane {

/// The order in which those go on who have more to do than can be done at once: whoever has taken
/// least goes first, and after each everybody waits for a millisecond, which is the machine's own
/// and no scheduler's. So nobody holds up the others by taking much, and all together leave the
/// processors to those who have no need to wait. Used on its queue alone, which it outlives.
class Turns {
public:
    using Queue = asio::strand<asio::io_context::executor_type>;

    explicit Turns(Queue queue) : m_queue(std::move(queue)), m_pause(m_queue) {}

    /// Of two that have taken as much, the one with the lower serial number goes first. Nobody
    /// waits twice at once.
    struct Place {
        std::size_t taken = 0; ///< so far, in any unit that all share
        std::uint64_t serial = 0;

        bool operator<(const Place &other) const {
            return taken < other.taken || (taken == other.taken && serial < other.serial);
        }
    };

    /// Calls the action soon, and never from in here.
    void await(Place place, std::function<void()> action);

    /// The action isn't called any more. Nothing happens where nobody waits.
    void leave(Place place) { m_waiting.erase(place); }

private:
    void takeNext();

    Queue m_queue;
    asio::steady_timer m_pause;
    std::map<Place, std::function<void()>> m_waiting;
    bool m_isUnderWay = false;
};

} // namespace morvane
