#include "Support/ManualScheduler.h"

#include <algorithm>
#include <utility>

namespace morvane {

Date ManualScheduler::now() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->now + m_state->clock;
}

Task ManualScheduler::after(Seconds delay, std::function<void()> action) {
    const auto shared = std::make_shared<std::function<void()>>(std::move(action));
    const std::lock_guard lock(m_state->mutex);
    m_state->timers.emplace(m_state->now + delay, shared);
    // Holds the state weakly: a task may well outlive its scheduler at a test's end.
    return Task([state = std::weak_ptr(m_state), shared] {
        if (const auto alive = state.lock()) {
            const std::lock_guard guard(alive->mutex);
            std::erase_if(alive->timers, [&](const auto &timer) { return timer.second == shared; });
        }
    });
}

void ManualScheduler::post(std::function<void()> action) {
    const std::lock_guard lock(m_state->mutex);
    m_state->posted.push_back(std::move(action));
}

void ManualScheduler::advance(Seconds length) {
    const Date until = now() - m_state->clock + length;
    runPosted();
    while (const auto action = takeDue(until)) {
        (*action)();
        runPosted();
    }
    const std::lock_guard lock(m_state->mutex);
    m_state->now = until;
}

void ManualScheduler::runPosted() {
    for (;;) {
        std::vector<std::function<void()>> batch;
        {
            const std::lock_guard lock(m_state->mutex);
            batch = std::exchange(m_state->posted, {});
        }
        if (batch.empty()) {
            return;
        }
        for (const auto &action : batch) {
            action();
        }
    }
}

void ManualScheduler::setClock(Seconds forward) {
    const std::lock_guard lock(m_state->mutex);
    m_state->clock += forward;
}

std::size_t ManualScheduler::timers() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->timers.size();
}

std::size_t ManualScheduler::posted() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->posted.size();
}

std::size_t ManualScheduler::timersDueIn(Seconds delay) const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->timers.count(m_state->now + delay);
}

std::shared_ptr<std::function<void()>> ManualScheduler::takeDue(Date until) {
    const std::lock_guard lock(m_state->mutex);
    const auto first = m_state->timers.begin();
    if (first == m_state->timers.end() || first->first > until) {
        return nullptr;
    }
    m_state->now = std::max(m_state->now, first->first);
    auto action = first->second;
    m_state->timers.erase(first);
    return action;
}

} // namespace morvane
