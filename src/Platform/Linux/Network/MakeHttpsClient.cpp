#include "Platform/Linux/MakeHttpsClient.h"

#include "Platform/Linux/Network/NetworkHttpsClient.h"

#include <QFileInfo>

#include <dlfcn.h>

namespace {

/// Qt aborts a program that mixes Qt libraries of different patch releases. Each library's file
/// name ends with its version.
bool isOfOneQt() {
    Dl_info network{};
    return ::dladdr(&QNetworkAccessManager::staticMetaObject, &network) != 0 &&
           QFileInfo(QString::fromLocal8Bit(network.dli_fname))
               .canonicalFilePath()
               .endsWith(QLatin1String(qVersion()));
}

} // namespace

extern "C" Q_DECL_EXPORT morvane::HttpsClient *
NETWORK_LIBRARY_ENTRY(morvane::Scheduler &scheduler, morvane::BackgroundPool &background) {
    return isOfOneQt() ? new morvane::NetworkHttpsClient(scheduler, background) : nullptr;
}
