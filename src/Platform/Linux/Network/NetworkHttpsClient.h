#pragma once

#include "Platform/BackgroundPool.h"
#include "Platform/HttpsClient.h"

#include <QNetworkAccessManager>

#include <optional>

namespace morvane {

/// Over Qt's network access, by the proxy of the desktop, which the pool finds out, as that may
/// take a script from the network. Certificates are checked as the machine's list says. Owned by
/// `LoadedHttpsClient`; main thread.
class NetworkHttpsClient : public HttpsClient {
public:
    /// Both must outlive the client.
    NetworkHttpsClient(Scheduler &scheduler, BackgroundPool &background);

    [[nodiscard]] Task send(const HttpsRequest &request, Finished finished) override;

private:
    class FoundProxies;

    QNetworkAccessManager &manager();

    Scheduler &m_scheduler;
    BackgroundPool &m_background;
    std::optional<QNetworkAccessManager> m_manager; ///< made for the first: it takes 270 KB
    FoundProxies *m_proxies = nullptr;              ///< the manager's
    QObject m_transfers;                            ///< owns them while they are under way
};

} // namespace morvane
