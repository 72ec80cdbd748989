#pragma once

#include <chrono>

namespace morvane {

/// How an agent waits for one of our hooks. A plain value.
struct HookWait {
    std::chrono::seconds limit; ///< the agent ends the hook after this time
    bool isAwaited;             ///< the agent does nothing else meanwhile
};

} // namespace morvane
