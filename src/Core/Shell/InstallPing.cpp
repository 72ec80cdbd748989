#include "Core/Shell/InstallPing.h"

#include "Core/Ground/AskWithin.h"
#include "Core/Settings/MorvaneSettings.h"

#include <nlohmann/json.hpp>

namespace morvane::InstallPing {

namespace {

constexpr Seconds pingLimit(10);

HttpsRequest request(const QUrl &url) {
    const nlohmann::json body{{"version", BuildInfo::version().toStdString()},
                              {"build", BuildInfo::build().toStdString()}};
    return {url,
            {{"Content-Type", "application/json"},
             {"User-Agent", BuildInfo::userAgent()},
             // By default Qt sends the person's language.
             {"Accept-Language", "*"}},
            QByteArray::fromStdString(body.dump())};
}

} // namespace

Task sendIfNeeded(MorvaneSettings &settings, HttpsClient &client, Scheduler &scheduler,
                  const std::optional<QUrl> &counter) {
    if (!counter || !settings.installPingEnabled() || settings.installPingSent()) {
        return {};
    }
    return askWithin(pingLimit, client, scheduler, request(*counter),
                     [&settings](const std::optional<HttpsAnswer> &answer) {
                         if (answer && answer->status >= 200 && answer->status <= 299) {
                             settings.setInstallPingSent(true);
                         }
                     });
}

} // namespace morvane::InstallPing
