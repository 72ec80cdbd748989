#pragma once

#include "Platform/Time.h"

namespace morvane {

/// A weight on a damped spring that is let go at rest, as a function of time. A plain value.
struct Spring {
    Seconds response; ///< the period that it would swing with if nothing damped it
    double damping;   ///< above 0; at 1 it doesn't overshoot

    /// How much of the way is behind it: from 0, maybe a little past 1, to 1 once it has settled.
    double at(Seconds elapsed) const;

    /// When it has come so close to its rest that nobody sees it move on.
    Seconds settlingTime() const;
};

} // namespace morvane
