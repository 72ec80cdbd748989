#include "Platform/Linux/LowPriorityPool.h"

#include <sys/resource.h>
#include <system_error>
#include <unistd.h>

namespace morvane {

namespace {

/// More than the work needs, since some of it may hang on a slow disk or network.
constexpr std::size_t maxThreads = 4;

constexpr int niceness = 10;

} // namespace

LowPriorityPool::~LowPriorityPool() {
    std::unique_lock lock(m_mutex);
    m_ending = true;
    m_waiting.clear();
    m_changed.notify_all();
    if (!m_changed.wait_for(lock, m_patience, [this] { return m_running == 0; })) {
        // A thread in a call that doesn't return can't be stopped, and while this process exists
        // the program can't be started again.
        m_giveUp();
    }
    lock.unlock();
    for (std::thread &thread : m_threads) {
        thread.join();
    }
}

void LowPriorityPool::run(std::function<void()> work) {
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(std::move(work));
    if (m_waiting.size() > m_idle && m_threads.size() < maxThreads) {
        addThread();
    }
    m_changed.notify_one();
}

/// If the system refuses a thread, the existing ones have to do, or the work waits until a later
/// call gets one.
void LowPriorityPool::addThread() {
    try {
        m_threads.emplace_back([this] { runThread(); });
    } catch (const std::system_error &) {
    }
}

void LowPriorityPool::runThread() {
    // Linux applies this to the one thread, and derives its disk priority from it.
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
        ++m_running;
        lock.unlock();
        work();
        work = nullptr;
        lock.lock();
        --m_running;
        m_changed.notify_all();
    }
}

} // namespace morvane
