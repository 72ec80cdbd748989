#pragma once

#include "Platform/Scheduler.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>

#include <chrono>
#include <thread>

namespace morvane {

/// A thread that does nothing but wait for sockets and timers. It starts with `start` and ends with
/// `stop`, or with the object; what is still to run then is dropped. While it runs, only the thread
/// itself may call `after` or release a task.
class IoThread : public Scheduler {
public:
    IoThread();
    ~IoThread() override;

    asio::io_context &context() { return m_context; }

    void start();

    /// Waits for the action that is running. Must not be called on the thread itself.
    void stop();

    /// Unaffected by changes of the system clock after construction.
    Date now() const override;
    Task after(Seconds delay, std::function<void()> action) override;
    void post(std::function<void()> action) override;

private:
    const Date m_madeAt = std::chrono::system_clock::now();
    const std::chrono::steady_clock::time_point m_madeAtSteady = std::chrono::steady_clock::now();
    asio::io_context m_context;
    asio::executor_work_guard<asio::io_context::executor_type> m_work;
    std::thread m_thread;
};

} // namespace morvane
