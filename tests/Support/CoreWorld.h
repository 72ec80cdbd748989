#pragma once

#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Support/ManualPool.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryHome.h"

namespace morvane {

/// What the core lives in: a home folder, settings, time, and work in the background.
struct CoreWorld {
    /// Lets time pass, and the pool do its work.
    void pass(Seconds time) {
        scheduler.advance(time);
        background.runAll();
        scheduler.runPosted();
    }

    TemporaryHome home;
    Defaults defaults{home.path("config"), "test"};
    MorvaneSettings settings{defaults};
    ManualScheduler scheduler;
    ManualPool background;
};

} // namespace morvane
