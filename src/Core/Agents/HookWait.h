#pragma once

#include <chrono>

namespace morvane {

/// How an agent waits for one of our hooks. A plain value.
struct HookWait {
    std::chrono::seconds limit; ///< it ends the hook after so long
    bool isAwaited;             ///< it does nothing else meanwhile
};

} // namespace morvane
