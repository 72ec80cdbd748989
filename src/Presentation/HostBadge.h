#pragma once

#include "Presentation/Badge.h"

#include <optional>

namespace morvane {

/// Names the program in which a session runs.
class HostBadge : public Badge {
    Q_OBJECT

public:
    using Badge::Badge;

    /// None hides the badge.
    void setHost(const std::optional<QString> &name);
};

} // namespace morvane
