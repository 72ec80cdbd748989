#pragma once

#include "Platform/Time.h"

namespace morvane {

/// How long a hook may wait for a decision. The agents themselves wait for twice as long, so that
/// the answer always comes first.
inline constexpr Seconds decisionLimit(60);

} // namespace morvane
