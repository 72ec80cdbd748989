#pragma once

#include "Platform/BackgroundPool.h"

#include <deque>

namespace morvane {

/// Background work that a test runs when it wants it done, on its own thread.
class ManualPool : public BackgroundPool {
public:
    void run(std::function<void()> work) override { m_waiting.push_back(std::move(work)); }

    /// Runs what is waiting, in the order of the calls.
    void runAll() {
        while (!m_waiting.empty()) {
            const auto work = std::move(m_waiting.front());
            m_waiting.pop_front();
            work();
        }
    }

    std::size_t waiting() const { return m_waiting.size(); }

private:
    std::deque<std::function<void()>> m_waiting;
};

} // namespace morvane
