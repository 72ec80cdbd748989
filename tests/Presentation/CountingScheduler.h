#pragma once

#include "Support/ManualScheduler.h"

namespace morvane {

/// Counts the timers that are started, to tell whether anything ticks.
class CountingScheduler : public ManualScheduler {
public:
    Task after(Seconds delay, std::function<void()> action) override {
        ++timersStarted;
        return ManualScheduler::after(delay, std::move(action));
    }

    int timersStarted = 0;
};

} // namespace morvane
