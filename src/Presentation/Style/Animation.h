#pragma once

#include "Platform/Scheduler.h"

#include <functional>

namespace morvane {

/// How a change comes on the screen.
enum class Motion { atOnce, animated };

/// A movement that runs for a while. About sixty times a second it tells its owner how far it has
/// come, as a function of the elapsed time. No timer runs while nothing moves. A new start drops
/// the running movement without calling its `finished`.
class Animation {
public:
    explicit Animation(Scheduler &scheduler) : m_scheduler(scheduler) {}

    /// Calls `step` with the elapsed share of the duration, from 0 to 1, at once and then on every
    /// frame up to and including 1; then calls `finished`, if there is one.
    void start(Seconds duration, std::function<void(double)> step,
               std::function<void()> finished = {});

    void stop();
    bool isRunning() const { return static_cast<bool>(m_step); }

    /// Easing curves over the share: `easeOut` starts fast, `easeIn` starts slowly.
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
