#pragma once

#include "Platform/Scheduler.h"

#include <chrono>
#include <functional>

namespace morvane {

/// Runs what the server posts to the main thread at once, as quickly as a main thread could.
class InlineScheduler : public Scheduler {
public:
    Date now() const override { return std::chrono::system_clock::now(); }
    Task after(Seconds, std::function<void()>) override { return {}; }
    void post(std::function<void()> action) override { action(); }
};

} // namespace morvane
