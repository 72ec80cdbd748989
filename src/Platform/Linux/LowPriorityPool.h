#pragma once

#include "Platform/BackgroundPool.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace morvane {

/// A few threads that give way to everything else on the machine. Each is started when there is
/// work and no thread is free, and sleeps while there is none; work that hangs, as on a dead file
/// system, keeps its thread. The pool is destroyed at the program's end: it then drops work that
/// has not begun and gives running work a second.
class LowPriorityPool : public BackgroundPool {
public:
    /// If work still runs when `patience` is over, the destructor calls `giveUp`, which should end
    /// the process at once. If that returns, the destructor waits for the work.
    explicit LowPriorityPool(std::function<void()> giveUp,
                             std::chrono::milliseconds patience = std::chrono::seconds(1))
        : m_giveUp(std::move(giveUp)), m_patience(patience) {}
    ~LowPriorityPool() override;

    void run(std::function<void()> work) override;

private:
    void addThread();
    void runThread();

    const std::function<void()> m_giveUp;
    const std::chrono::milliseconds m_patience;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_waiting;
    std::vector<std::thread> m_threads;
    std::size_t m_idle = 0;    ///< threads that sleep
    std::size_t m_running = 0; ///< threads at work
    bool m_ending = false;
};

} // namespace morvane
