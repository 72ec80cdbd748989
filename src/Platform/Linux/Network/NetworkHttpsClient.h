#pragma once

#include "Platform/BackgroundPool.h"
#include "Platform/HttpsClient.h"

#include <QNetworkAccessManager>

#include <optional>

namespace morvane {

/// Uses Qt's network access and the desktop's proxy. The pool looks up the proxy, which may take a
/// script from the network. Certificates are checked against the machine's list. Owned by
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
    std::optional<QNetworkAccessManager> m_manager; ///< made for the first request: it takes 270 KB
    FoundProxies *m_proxies = nullptr;              ///< the manager's
    QObject m_transfers;                            ///< owns the transfers under way
};

} // namespace morvane
