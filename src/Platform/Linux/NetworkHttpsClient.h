#pragma once

#include "Platform/BackgroundPool.h"
#include "Platform/HttpsClient.h"

#include <QNetworkAccessManager>

namespace morvane {

/// Over Qt's network access, by the proxy of the desktop, which the pool finds out, as that may
/// take a script from the network. Certificates are checked as the machine's list says. Owned by
/// the application; main thread.
class NetworkHttpsClient : public HttpsClient {
public:
    /// Both must outlive the client.
    NetworkHttpsClient(Scheduler &scheduler, BackgroundPool &background);

    [[nodiscard]] Task send(const HttpsRequest &request, Finished finished) override;

private:
    Scheduler &m_scheduler;
    BackgroundPool &m_background;
    QNetworkAccessManager m_manager;
};

} // namespace morvane
