#include "Core/Intake/Turns.h"

#include <asio/post.hpp>

#include <chrono>
#include <utility>

namespace morvane {

namespace {

constexpr std::chrono::milliseconds pause(1);

} // namespace

void Turns::await(Place place, std::function<void()> action) {
    m_waiting.insert_or_assign(place, std::move(action));
    if (!std::exchange(m_isUnderWay, true)) {
        asio::post(m_queue, [this] { takeNext(); });
    }
}

void Turns::takeNext() {
    m_isUnderWay = !m_waiting.empty();
    if (!m_isUnderWay) {
        return;
    }
    m_pause.expires_after(pause);
    m_pause.async_wait([this](const asio::error_code &error) {
        if (!error) {
            takeNext();
        }
    });
    m_waiting.extract(m_waiting.begin()).mapped()();
}

} // namespace morvane
