#pragma once

#include "Platform/Time.h"

/// How long an agent lets a hook of ours run.
namespace morvane::HookTimeout {

/// A hook that waits for a person.
constexpr std::chrono::seconds decision(120);

/// Any other hook.
constexpr std::chrono::seconds event(5);

/// The longest that an agent waits for a hook of its session's end.
constexpr std::chrono::seconds sessionEnd(3);

} // namespace morvane::HookTimeout

namespace morvane {

/// How long the server lets a hook wait for a decision.
inline constexpr Seconds decisionLimit(60);
static_assert(decisionLimit < HookTimeout::decision, "our answer comes first");

} // namespace morvane
