#pragma once

#include <asio/io_context.hpp>
#include <asio/strand.hpp>

#include <cstddef>
#include <functional>
#include <map>

namespace morvane {

/// The order in which those go on who have more to do than can be done at once: whoever has taken
/// least goes first, and between two of them everything else on the queue has its turn. So nobody
/// holds up the others by taking much. Used on its queue alone, which it outlives.
class Turns {
public:
    using Queue = asio::strand<asio::io_context::executor_type>;

    explicit Turns(Queue queue) : m_queue(std::move(queue)) {}

    /// Calls the action soon, and never from in here. `taken` is what it has taken so far, in any
    /// unit that all share.
    void await(std::size_t taken, std::function<void()> action);

private:
    void arrangeNext();

    Queue m_queue;
    std::multimap<std::size_t, std::function<void()>> m_waiting;
    bool m_isArranged = false;
};

} // namespace morvane
