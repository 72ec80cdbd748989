#pragma once

namespace morvane {

/// What a session is doing. The order matters: the states before `done` are those of a session
/// that is still at work.
enum class SessionState {
    working,
    needsInput, ///< waits for a person
    done,       ///< a turn has ended
    failed,     ///< a turn has ended in an error
    idle,       ///< open, with no turn run since it was seen
};

} // namespace morvane
