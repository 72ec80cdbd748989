#pragma once

#include "Platform/Time.h"

namespace morvane {

/// A damped spring that is released at rest, as a function of time. A plain value.
struct Spring {
    Seconds response; ///< the period of the oscillation without damping
    double damping;   ///< the damping ratio, above 0; at 1 it doesn't overshoot

    /// The share of the way covered: from 0, perhaps beyond 1 in an overshoot, to 1 once it has
    /// settled.
    double at(Seconds elapsed) const;

    /// The time after which nobody can see it move any more.
    Seconds settlingTime() const;
};

} // namespace morvane
