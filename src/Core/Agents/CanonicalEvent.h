#pragma once

namespace morvane {

/// What an agent's hook tells, whatever the agent calls it.
enum class CanonicalEvent {
    sessionStart,
    promptSubmit,
    toolUse,
    needsInput, ///< the agent waits for a person, in its own terminal
    idle,       ///< the agent waits for the next prompt
    turnEnd,
    turnFailed,
    subagentStop,
    sessionEnd,
    permissionRequest, ///< the agent asks whether a tool may run, and can take an answer
};

} // namespace morvane
