#pragma once

#include "Platform/HttpsClient.h"

namespace morvane {

class BackgroundPool;
class Scheduler;

/// The function that network.so exports. It returns a client that the caller owns, or null if Qt
/// has been upgraded while the program runs. Its name, NETWORK_LIBRARY_ENTRY, contains the version
/// and the build number, since the library on the disk may be newer than the running program.
using MakeHttpsClient = HttpsClient *(Scheduler &scheduler, BackgroundPool &background);

} // namespace morvane
