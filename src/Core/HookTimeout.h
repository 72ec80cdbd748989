#pragma once

/// How long an agent lets a hook of ours run, in seconds, the agents' own unit.
namespace morvane::HookTimeout {

/// A hook that waits for a person. More than the server's own limit, so that its answer always
/// comes first.
constexpr int decision = 120;

/// Any other hook.
constexpr int event = 5;

} // namespace morvane::HookTimeout
