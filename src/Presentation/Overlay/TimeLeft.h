#pragma once

#include "Platform/Time.h"

#include <algorithm>

namespace morvane {

/// What is left of a length of time that began at `since`, at least 0. A clock that was set back
/// starts it over, and doesn't prolong it.
inline Seconds timeLeft(Seconds length, Date &since, Date now) {
    since = std::min(since, now);
    return std::max(Seconds(0), Seconds(length - (now - since)));
}

} // namespace morvane
