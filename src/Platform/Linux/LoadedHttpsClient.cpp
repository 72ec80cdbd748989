#include "Platform/Linux/LoadedHttpsClient.h"

#include "Platform/Linux/MakeHttpsClient.h"

#include <QCoreApplication>
#include <QLibrary>

#include <optional>
#include <utility>

#define TEXT_OF(name) #name
#define ENTRY_TEXT(name) TEXT_OF(name)

namespace morvane {

LoadedHttpsClient::LoadedHttpsClient(QString library, Scheduler &scheduler,
                                     BackgroundPool &background)
    : m_library(std::move(library)), m_scheduler(scheduler), m_background(background) {}

QString LoadedHttpsClient::libraryOfProgram() {
    return QCoreApplication::applicationDirPath() +
           QStringLiteral("/../lib/morvane/plugins/network.so");
}

Task LoadedHttpsClient::send(const HttpsRequest &request, Finished finished) {
    // None once nobody waits any more.
    const auto transfer = std::make_shared<std::optional<Task>>(Task());
    m_background.compute(
        [library = m_library] {
            return reinterpret_cast<MakeHttpsClient *>(
                QLibrary::resolve(library, ENTRY_TEXT(NETWORK_LIBRARY_ENTRY)));
        },
        m_scheduler, &m_loading,
        [this, transfer, request, finished = std::move(finished)](MakeHttpsClient *make) {
            if (!*transfer) {
                return;
            }
            if (make && !m_client) {
                m_client.reset(make(m_scheduler, m_background));
            }
            if (m_client) {
                **transfer = m_client->send(request, finished);
            } else {
                finished(std::nullopt);
            }
        });
    return Task([transfer] { transfer->reset(); });
}

} // namespace morvane
