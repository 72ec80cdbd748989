#pragma once

#include "Platform/Scheduler.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>

namespace morvane {

/// The common beat of all mascots. The steps of an interval are aligned to the wall clock, so that
/// mascots in the same state move together, however many panels they are in, on a single wake-up.
/// No timer runs without followers. Outlives its followers. Main thread.
class PixelTimeline {
public:
    using Interval = std::chrono::milliseconds;

    explicit PixelTimeline(Scheduler &scheduler) : m_scheduler(scheduler) {}

    /// The index of the interval's current step, counted from the epoch.
    std::int64_t step(Interval interval) const {
        return m_scheduler.now().time_since_epoch() / interval;
    }

    /// Runs the action at each new step, until the task is destroyed; the action may destroy its
    /// own task or any other.
    [[nodiscard]] Task follow(Interval interval, std::function<void()> action);

private:
    struct Beat {
        std::map<int, std::function<void()>> followers;
        Task tick;
    };

    void aim(Interval interval);
    void advance(Interval interval);
    void leave(Interval interval, int follower);

    Scheduler &m_scheduler;
    std::map<Interval, Beat> m_beats;
    int m_lastFollower = 0;
};

} // namespace morvane
