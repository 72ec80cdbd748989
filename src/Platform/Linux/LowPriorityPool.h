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
/// work that no other thread is free for, and sleeps when there is none; work that hangs, as on a
/// file system that answers no more, keeps its thread. The end of the pool, which is the program's,
/// drops what has not begun and gives what runs a second.
class LowPriorityPool : public BackgroundPool {
public:
    /// Where something still runs when the patience is over, `giveUp` is called, which is to end
    /// the process as it is. When it returns, what runs is waited for.
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
