#pragma once

#include <chrono>

namespace morvane {

/// An absolute moment on the wall clock.
using Date = std::chrono::system_clock::time_point;

/// A length of time in seconds, fractions included.
using Seconds = std::chrono::duration<double>;

/// Moves a date by a length of time; a plain sum would change the clock's own resolution.
inline Date operator+(Date date, Seconds length) {
    return date + std::chrono::duration_cast<Date::duration>(length);
}
inline Date operator-(Date date, Seconds length) {
    return date - std::chrono::duration_cast<Date::duration>(length);
}

} // namespace morvane
