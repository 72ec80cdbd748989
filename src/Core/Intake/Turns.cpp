#include "Core/Intake/Turns.h"

#include <asio/post.hpp>

#include <utility>

namespace morvane {

void Turns::await(std::size_t taken, std::function<void()> action) {
    m_waiting.emplace(taken, std::move(action));
    arrangeNext();
}

void Turns::arrangeNext() {
    if (m_isArranged || m_waiting.empty()) {
        return;
    }
    m_isArranged = true;
    asio::post(m_queue, [this] {
        m_isArranged = false;
        const auto next = m_waiting.extract(m_waiting.begin());
        arrangeNext();
        next.mapped()();
    });
}

} // namespace morvane
