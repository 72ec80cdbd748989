#include "Platform/Linux/LoadedHttpsClient.h"

#include <QCoreApplication>
#include <QLibrary>

#include <optional>
#include <utility>

#define TEXT_OF(name) #name
#define ENTRY_TEXT(name) TEXT_OF(name)

namespace morvane {

struct LoadedHttpsClient::Waiting {
    HttpsRequest request;
    Finished finished; ///< empty once it has been used or cancelled
    Task transfer;
};

LoadedHttpsClient::LoadedHttpsClient(QString library, Scheduler &scheduler,
                                     BackgroundPool &background)
    : m_library(std::move(library)), m_scheduler(scheduler), m_background(background) {}

QString LoadedHttpsClient::libraryOfProgram() {
    return QCoreApplication::applicationDirPath() +
           QStringLiteral("/../lib/morvane/plugins/network.so");
}

Task LoadedHttpsClient::send(const HttpsRequest &request, Finished finished) {
    // Its last reference may go on another thread, but its contents are made and destroyed on this
    // one.
    const auto waiting = std::make_shared<Waiting>(Waiting{request, std::move(finished), {}});
    m_background.compute(
        [library = m_library] {
            return reinterpret_cast<MakeHttpsClient *>(
                QLibrary::resolve(library, ENTRY_TEXT(NETWORK_LIBRARY_ENTRY)));
        },
        m_scheduler, &m_loading, [this, waiting](MakeHttpsClient *make) { begin(*waiting, make); });
    return Task([waiting] { *waiting = {}; });
}

void LoadedHttpsClient::begin(Waiting &waiting, MakeHttpsClient *make) {
    const Finished finished = std::exchange(waiting.finished, nullptr);
    if (!finished) {
        return;
    }
    if (make && !m_client) {
        m_client.reset(make(m_scheduler, m_background));
    }
    if (m_client) {
        waiting.transfer = m_client->send(std::exchange(waiting.request, {}), finished);
    } else {
        finished(std::nullopt);
    }
}

} // namespace morvane
