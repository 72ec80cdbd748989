#pragma once

namespace morvane {

/// What a session is doing.
enum class SessionState {
    working,
    needsInput, ///< waits for a person
    done,       ///< a turn has ended
    failed,     ///< a turn has ended in an error
    idle,       ///< open, with nothing running and no result
};

} // namespace morvane
