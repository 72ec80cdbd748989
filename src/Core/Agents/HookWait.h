#pragma once

namespace morvane {

/// How an agent waits for one of our hooks. A plain value.
struct HookWait {
    int seconds;    ///< it ends the hook after so long
    bool isAwaited; ///< it does nothing else meanwhile
};

} // namespace morvane
