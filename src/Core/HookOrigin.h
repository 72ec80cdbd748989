#pragma once

#include "Core/PaneLocator.h"

namespace morvane {

/// Where a hook ran, as the forwarder found it in its environment. An empty string tells nothing.
struct HookOrigin {
    std::optional<QString> itermSessionID;
    std::optional<QString> termProgram;
    std::optional<QString> hostBundleID;
    std::optional<QString> ttyName;
    PaneLocator pane;

    friend bool operator==(const HookOrigin &, const HookOrigin &) = default;
};

} // namespace morvane
