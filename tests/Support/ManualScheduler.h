#pragma once

#include "Platform/Scheduler.h"

#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace morvane {

/// Time that stands still until a test moves it. Actions run inside `advance` and `runPosted`, on
/// the thread that calls them; everything else is safe from any thread, so that one scheduler can
/// stand in for the main loop and for the server's timers.
class ManualScheduler : public Scheduler {
public:
    Date now() const override;
    Task after(Seconds delay, std::function<void()> action) override;
    void post(std::function<void()> action) override;

    /// Moves time forward and runs, in order, what falls due on the way and what was posted.
    void advance(Seconds length);

    /// Runs what has been posted, and what that posts in turn.
    void runPosted();

    /// Sets the clock forward, or back, as a person does: no time passes, and timers fire after the
    /// same delay as before.
    void setClock(Seconds forward);

    std::size_t timers() const;
    std::size_t posted() const;

    /// How many timers fire in exactly this time from now.
    std::size_t timersDueIn(Seconds delay) const;

private:
    struct State {
        mutable std::mutex mutex;
        Date now{std::chrono::seconds(1'700'000'000)};
        Seconds clock{0}; ///< how far the clock is ahead of `now`
        std::multimap<Date, std::shared_ptr<std::function<void()>>> timers;
        std::vector<std::function<void()>> posted;
    };

    std::shared_ptr<std::function<void()>> takeDue(Date until);

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace morvane
