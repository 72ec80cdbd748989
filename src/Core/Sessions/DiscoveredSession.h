#pragma once

#include "Core/Agents/AgentKind.h"
#include "Platform/Time.h"

#include <QString>

#include <optional>

namespace morvane {

struct Session;

/// A session whose transcript was found on disk.
struct DiscoveredSession {
    QString id;
    AgentKind agent = defaultAgentKind;
    QString cwd; ///< empty when the transcript doesn't tell
    QString transcriptPath;
    Date lastActive;
    std::optional<QString> gitBranch = std::nullopt;

    /// The session as it was left: idle, and seen.
    Session session() const;

    friend bool operator==(const DiscoveredSession &, const DiscoveredSession &) = default;
};

} // namespace morvane
