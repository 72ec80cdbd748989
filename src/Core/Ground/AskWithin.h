#pragma once

#include "Platform/HttpsClient.h"
#include "Platform/Scheduler.h"

namespace morvane {

/// Sends the request and waits up to `limit` for the whole answer. `finished` is called once, on
/// the main thread and after this has returned, with none if no answer that can be trusted came in
/// time. When the task ends, so does the transfer, and `finished` isn't called.
[[nodiscard]] Task askWithin(Seconds limit, HttpsClient &client, Scheduler &scheduler,
                             const HttpsRequest &request, HttpsClient::Finished finished);

} // namespace morvane
