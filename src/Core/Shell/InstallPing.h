#pragma once

#include "Core/Shell/BuildInfo.h"
#include "Platform/Task.h"

namespace morvane {

class HttpsClient;
class MorvaneSettings;
class Scheduler;

/// Tells the maker, once for an installation, that there is one more, and of which version. Nothing
/// else, and nobody where the build has no address for it.
namespace InstallPing {

/// Counts this installation unless that has been done or isn't wanted. What fails is tried again
/// with the next start. The end of the task ends it; settings, client and scheduler must outlive
/// that. Main thread. Another address is for tests.
[[nodiscard]] Task sendIfNeeded(MorvaneSettings &settings, HttpsClient &client,
                                Scheduler &scheduler,
                                const std::optional<QUrl> &counter = BuildInfo::installCounter());

} // namespace InstallPing

} // namespace morvane
