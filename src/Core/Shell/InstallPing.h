#pragma once

#include "Core/Shell/BuildInfo.h"
#include "Platform/Task.h"

namespace morvane {

class HttpsClient;
class MorvaneSettings;
class Scheduler;

/// Tells the maker, once per installation, that there is one more, and of which version. Sends
/// nothing else, and nothing at all if the build has no address for it.
namespace InstallPing {

/// Counts this installation unless that has been done or isn't wanted. A failure is retried at the
/// next start. The end of the task cancels it; settings, client and scheduler must outlive the
/// task. Main thread. Another address is for tests.
[[nodiscard]] Task sendIfNeeded(MorvaneSettings &settings, HttpsClient &client,
                                Scheduler &scheduler,
                                const std::optional<QUrl> &counter = BuildInfo::installCounter());

} // namespace InstallPing

} // namespace morvane
