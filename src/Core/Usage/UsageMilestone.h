#pragma once

#include <cmath>

namespace morvane {

/// The limits that Claude counts a person's use against.
enum class UsageWindowKind {
    session,
    weekly,
    model, ///< of one family of models alone
};

/// A limit of which so much is used up that the person is told.
struct UsageMilestone {
    UsageWindowKind kind = UsageWindowKind::session;
    double threshold = 0; ///< from 0 to 1

    int percent() const { return static_cast<int>(std::lround(threshold * 100)); }

    friend bool operator==(const UsageMilestone &, const UsageMilestone &) = default;
};

} // namespace morvane
