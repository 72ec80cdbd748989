#pragma once

#include "Platform/Scheduler.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>

namespace morvane {

/// The beat to which all mascots move. The steps of an interval lie on one grid of the wall clock,
/// so that mascots of one state are in step with each other however many panels they are in, and
/// one wake-up moves them all. Nothing ticks while nobody follows. Outlives its followers. Main
/// thread.
class PixelTimeline {
public:
    using Interval = std::chrono::milliseconds;

    explicit PixelTimeline(Scheduler &scheduler) : m_scheduler(scheduler) {}

    /// The number of the interval's step that the present moment is in.
    std::int64_t step(Interval interval) const {
        return m_scheduler.now().time_since_epoch() / interval;
    }

    /// Runs the action at each new step, until the task is dropped; the action may drop it, or
    /// any other.
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
