#pragma once

#include "Platform/Time.h"

#include <algorithm>

namespace morvane {

/// How long to wait before limits are asked for again: twice as long after each failure.
class Backoff {
public:
    static constexpr Seconds ordinaryInterval{300};
    static constexpr Seconds intervalNearLimit{120};
    static constexpr double mostBackoff = 16;

    /// `most` is the limit of the multiplier.
    void failed(double most = mostBackoff) { m_multiplier = std::min(2 * m_multiplier, most); }
    void succeeded() { m_multiplier = 1; }

    Seconds of(Seconds interval) const { return interval * m_multiplier; }

private:
    double m_multiplier = 1;
};

} // namespace morvane
