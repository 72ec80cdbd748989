#pragma once

#include "Platform/Scheduler.h"

#include <functional>

namespace morvane {

/// How a change comes on the screen.
enum class Motion { atOnce, animated };

/// Something that moves for a while: its owner is told how far it has come, as a function of the
/// time that has passed, about sixty times a second. Nothing ticks while nothing moves. A new
/// start drops what was under way, its end included.
class Animation {
public:
    explicit Animation(Scheduler &scheduler) : m_scheduler(scheduler) {}

    /// Calls `step` with the share of the duration that has passed, from 0 to 1, at once and then
    /// until it has been called with 1; `finished`, if there is one, comes after that.
    void start(Seconds duration, std::function<void(double)> step,
               std::function<void()> finished = {});

    void stop();
    bool isRunning() const { return static_cast<bool>(m_step); }

    /// Curves over the share: quick at first, and slow at first.
    static double easeOut(double share) { return 1 - (1 - share) * (1 - share); }
    static double easeIn(double share) { return share * share; }

private:
    void advance();

    Scheduler &m_scheduler;
    Date m_startedAt;
    Seconds m_duration{};
    std::function<void(double)> m_step;
    std::function<void()> m_finished;
    Task m_tick;
};

} // namespace morvane
