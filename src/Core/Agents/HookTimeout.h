#pragma once

#include "Platform/Time.h"

/// How long an agent lets a hook of ours run, in seconds.
namespace morvane::HookTimeout {

/// A hook that waits for a person. More than `decisionLimit`, so that our answer always comes
/// first.
constexpr int decision = 120;

/// Any other hook.
constexpr int event = 5;

/// The longest that an agent waits for a hook of its session's end.
constexpr int sessionEnd = 3;

} // namespace morvane::HookTimeout

namespace morvane {

/// How long the server lets a hook wait for a decision.
inline constexpr Seconds decisionLimit(60);

} // namespace morvane
