#pragma once

namespace morvane {

/// How close a session's context comes to a standard window of 200,000 tokens.
enum class ContextPressure {
    comfortable,
    filling, ///< from 140,000
    tight,   ///< from 180,000
    large,   ///< from 200,000: a larger window than the standard one, so nothing to warn of
};

} // namespace morvane
