#pragma once

#include "Platform/HttpsClient.h"

namespace morvane {

class BackgroundPool;
class Scheduler;

/// What network.so has to give: a client, for whoever asks to own. Its name, NETWORK_LIBRARY_ENTRY,
/// is that of one build, since what lies beside a running program may be a newer one's.
using MakeHttpsClient = HttpsClient *(Scheduler &scheduler, BackgroundPool &background);

} // namespace morvane
