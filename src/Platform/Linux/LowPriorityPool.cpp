#include "Platform/Linux/LowPriorityPool.h"

#include <sys/resource.h>
#include <unistd.h>

namespace morvane {

namespace {

/// More than the work needs, since some of it may hang on a slow disk or network.
constexpr std::size_t maxThreads = 4;

constexpr int niceness = 10;

} // namespace

LowPriorityPool::~LowPriorityPool() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        m_waiting.clear();
    }
    m_changed.notify_all();
    for (std::thread &thread : m_threads) {
        thread.join();
    }
}

void LowPriorityPool::run(std::function<void()> work) {
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(std::move(work));
    if (m_waiting.size() > m_idle && m_threads.size() < maxThreads) {
        m_threads.emplace_back([this] { runThread(); });
    }
    m_changed.notify_one();
}

void LowPriorityPool::runThread() {
    // Linux counts a thread as a process of its own here; the disk follows the same number.
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), niceness);
    std::unique_lock lock(m_mutex);
    for (;;) {
        ++m_idle;
        m_changed.wait(lock, [this] { return m_ending || !m_waiting.empty(); });
        --m_idle;
        if (m_ending) {
            return;
        }
        std::function<void()> work = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        work();
        work = nullptr;
        lock.lock();
    }
}

} // namespace morvane
