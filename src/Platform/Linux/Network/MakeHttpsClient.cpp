#include "Platform/Linux/MakeHttpsClient.h"

#include "Platform/Linux/Network/NetworkHttpsClient.h"

extern "C" Q_DECL_EXPORT morvane::HttpsClient *
NETWORK_LIBRARY_ENTRY(morvane::Scheduler &scheduler, morvane::BackgroundPool &background) {
    return new morvane::NetworkHttpsClient(scheduler, background);
}
