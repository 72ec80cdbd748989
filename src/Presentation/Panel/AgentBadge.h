#pragma once

#include "Core/Agents/AgentKind.h"
#include "Presentation/Style/Badge.h"

#include <optional>

namespace morvane {

/// Shows which agent's session a row is about, by the agent's mark and name.
class AgentBadge : public Badge {
    Q_OBJECT

public:
    using Badge::Badge;

    /// None hides the badge.
    void setAgent(std::optional<AgentKind> agent);
};

} // namespace morvane
