#pragma once

#include "Core/AgentKind.h"
#include "Platform/Time.h"

#include <QString>

#include <optional>

namespace morvane {

/// A session whose transcript was found on disk.
struct DiscoveredSession {
    QString id;
    AgentKind agent = AgentKind::claude;
    QString cwd; ///< empty when the transcript doesn't tell
    QString transcriptPath;
    Date lastActive;
    std::optional<QString> gitBranch = std::nullopt;

    friend bool operator==(const DiscoveredSession &, const DiscoveredSession &) = default;
};

} // namespace morvane
