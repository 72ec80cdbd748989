#pragma once

#include "Presentation/Style/Badge.h"

#include <optional>

namespace morvane {

/// Marks a session whose agent asks more or less often than usual.
class PermissionModeBadge : public Badge {
    Q_OBJECT

public:
    using Badge::Badge;

    /// The agent's own name of the mode; none hides the badge.
    void setMode(const std::optional<QString> &mode);
};

} // namespace morvane
