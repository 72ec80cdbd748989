#pragma once

namespace morvane {

/// How far the capsules make up for a missing tray. Without a tray, nothing else at the top of the
/// screen shows that Morvane runs.
enum class StandIn {
    none,        ///< capsules are on screen only for their own reasons
    whileActive, ///< an on-call capsule also stays while sessions are active
    always,      ///< for a new user, with no sessions yet that would bring it up
};

} // namespace morvane
