#pragma once

#include "Platform/BackgroundPool.h"
#include "Platform/HttpsClient.h"
#include "Platform/Linux/MakeHttpsClient.h"

#include <QObject>
#include <QString>

#include <memory>

namespace morvane {

/// The client of network.so, which is loaded at the first request and stays loaded: with Qt's
/// network access it takes a megabyte, and most people never need it. If it can't be used, as after
/// an upgrade of this program or of Qt while this one runs, requests finish without an answer.
/// Owned by the application; main thread.
class LoadedHttpsClient : public HttpsClient {
public:
    /// Takes the library's path. The scheduler and the pool must outlive the client.
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
    QObject m_loading; ///< its destruction drops pending loads
};

} // namespace morvane
