#pragma once

namespace morvane {

/// How it stands with the feed from an agent's status line.
enum class StatusLineHealth {
    notApplicable, ///< the agent has no such feed
    connected,
    scriptMissing, ///< the setting is ours, the script that it names can't be run
    ownedByOther,  ///< another tool's, which is no fault
    absent,
};

} // namespace morvane
