#pragma once

#include "Platform/HttpsClient.h"
#include "Platform/Scheduler.h"

namespace morvane {

/// Sends the request, and waits no longer for all of its answer than this: `finished` is called
/// once, later on and on the main thread, with none where there was no answer by then or none that
/// could be trusted. The end of the task ends the transfer, and nobody is called.
[[nodiscard]] Task askWithin(Seconds limit, HttpsClient &client, Scheduler &scheduler,
                             const HttpsRequest &request, HttpsClient::Finished finished);

} // namespace morvane
