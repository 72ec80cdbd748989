#pragma once

#include "Platform/Task.h"
#include "Platform/Time.h"

#include <functional>

namespace morvane {

/// Time and the run loop of one thread. Every delay, expiry and animation takes its time from
/// here, so that tests can move it by hand.
class Scheduler {
public:
    Scheduler() = default;
    Scheduler(const Scheduler &) = delete;
    Scheduler &operator=(const Scheduler &) = delete;
    virtual ~Scheduler() = default;

    /// The present moment. Safe from any thread.
    virtual Date now() const = 0;

    /// Runs the action once, on the scheduler's thread, when the delay has passed. Destroying the
    /// task cancels the action. Call this, and destroy the task, on that thread.
    [[nodiscard]] virtual Task after(Seconds delay, std::function<void()> action) = 0;

    /// Runs the action on the scheduler's thread as soon as it gets to it, in the order of the
    /// calls. Safe from any thread.
    virtual void post(std::function<void()> action) = 0;
};

} // namespace morvane
