#pragma once

#include "Core/Agents/PaneLocator.h"
#include "Platform/Processes.h"

#include <QString>

#include <optional>

namespace morvane {

struct HttpRequest;

/// Where a hook ran, as the forwarder found it in its environment. No text is empty.
struct HookOrigin {
    std::optional<QString> itermSessionID;
    std::optional<QString> termProgram;
    std::optional<QString> hostBundleID;
    std::optional<QString> ttyName;
    PaneLocator pane;
    std::optional<ProcessIdentity> process = {}; ///< the agent itself, as far as can be told

    /// What the headers of the forwarder's request tell.
    static HookOrigin of(const HttpRequest &request);

    friend bool operator==(const HookOrigin &, const HookOrigin &) = default;
};

} // namespace morvane
