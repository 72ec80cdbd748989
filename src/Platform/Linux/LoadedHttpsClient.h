#pragma once

#include "Platform/BackgroundPool.h"
#include "Platform/HttpsClient.h"
#include "Platform/Linux/MakeHttpsClient.h"

#include <QObject>
#include <QString>

#include <memory>

namespace morvane {

/// The client of network.so, which is loaded for the first request and stays: with Qt's network
/// access and all that it needs it takes a megabyte, and most have nothing to ask for. Where it
/// can't be used, as after an upgrade of this program or of Qt under a running one, no request is
/// answered. Owned by the application; main thread.
class LoadedHttpsClient : public HttpsClient {
public:
    /// Takes the path of the library. The others must outlive the client.
    LoadedHttpsClient(QString library, Scheduler &scheduler, BackgroundPool &background);

    /// Where the library of this program is.
    static QString libraryOfProgram();

    [[nodiscard]] Task send(const HttpsRequest &request, Finished finished) override;

private:
    struct Waiting;

    void begin(Waiting &waiting, MakeHttpsClient *make);

    const QString m_library;
    Scheduler &m_scheduler;
    BackgroundPool &m_background;
    std::unique_ptr<HttpsClient> m_client;
    QObject m_loading; ///< what is heard of it ends with the client
};

} // namespace morvane
