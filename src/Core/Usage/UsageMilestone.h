#pragma once

#include <array>
#include <cmath>

namespace morvane {

/// The limits that Claude counts a person's use against, in order of precedence.
enum class UsageWindowKind {
    session,
    weekly,
    model, ///< of one family of models alone
};

/// A limit of which so much is used up that the person is told.
struct UsageMilestone {
    static constexpr std::array thresholds{0.85, 0.90, 0.95};

    UsageWindowKind kind = UsageWindowKind::session;
    double threshold = 0; ///< one of `thresholds`: the highest that is reached

    int percent() const { return static_cast<int>(std::lround(threshold * 100)); }

    friend bool operator==(const UsageMilestone &, const UsageMilestone &) = default;
};

} // namespace morvane
