#pragma once

#include "Platform/Time.h"

#include <algorithm>
#include <optional>

namespace morvane {

/// Holds while the clock is within a fixed time of the last renewal, before it or after.
class Lease {
public:
    explicit Lease(Seconds length) : m_length(length) {}

    void renew(Date now) { m_renewedAt = now; }
    void end() { m_renewedAt.reset(); }

    /// How long it still holds if nobody renews it; 0 once it is over.
    Seconds left(Date now) const {
        return m_renewedAt
                   ? std::max(Seconds(0), Seconds(m_length - std::chrono::abs(now - *m_renewedAt)))
                   : Seconds(0);
    }

private:
    const Seconds m_length;
    std::optional<Date> m_renewedAt;
};

} // namespace morvane
