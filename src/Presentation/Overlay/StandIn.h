#pragma once

namespace morvane {

/// How far the capsules make up for a tray that isn't there. Without one, nothing else at the top
/// of the screen tells that Morvane runs.
enum class StandIn {
    none,        ///< each capsule has reasons of its own to be on screen
    whileActive, ///< one on call also stays while sessions are active
    always,      ///< for a newcomer, to whom nothing would ever call it as yet
};

} // namespace morvane
