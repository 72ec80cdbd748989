#pragma once

#include "Platform/Time.h"

#include <QString>

#include <optional>

namespace morvane {

/// A tool call whose hook waits for a yes or a no.
struct PendingApproval {
    QString id; ///< the decision id under which the server has parked the hook
    QString toolName;
    std::optional<QString> detail;
    Date expiresAt; ///< for display: the expiry itself is told by the server
    bool allowsRemembering = false;

    friend bool operator==(const PendingApproval &, const PendingApproval &) = default;
};

} // namespace morvane
