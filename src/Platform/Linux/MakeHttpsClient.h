#pragma once

#include "Platform/HttpsClient.h"

namespace morvane {

class BackgroundPool;
class Scheduler;

/// What network.so has to give: a client, for whoever asks to own; none where Qt has been upgraded
/// under the running program. Its name, NETWORK_LIBRARY_ENTRY, holds the version and the build's
/// number, since what lies beside a running program may be a newer one's.
using MakeHttpsClient = HttpsClient *(Scheduler &scheduler, BackgroundPool &background);

} // namespace morvane
