#include "Core/Shell/BuildInfo.h"

#include "Core/Shell/UpdateSignature.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>

namespace morvane::BuildInfo {

namespace {

std::optional<QUrl> safe(const QString &text) {
    const QUrl address(text);
    return address.isValid() && address.scheme() == QLatin1String("https") ? std::optional(address)
                                                                           : std::nullopt;
}

} // namespace

QString version() {
    return QStringLiteral(MORVANE_VERSION);
}

QString build() {
    return QStringLiteral(MORVANE_BUILD);
}

std::optional<QDateTime> builtAt() {
    const QDateTime changed = QFileInfo(QCoreApplication::applicationFilePath()).lastModified();
    return changed.isValid() ? std::optional(changed) : std::nullopt;
}

QString builtAtDescription() {
    const auto made = builtAt();
    if (!made) {
        return QCoreApplication::translate("BuildInfo", "unknown");
    }
    return QCoreApplication::translate("BuildInfo", "%1 at %2")
        .arg(QLocale().toString(made->date(), QStringLiteral("d MMM yyyy")),
             QLocale().toString(made->time(), QLocale::ShortFormat));
}

std::optional<QUrl> communityURL() {
    return safe(QStringLiteral(MORVANE_COMMUNITY_URL));
}

std::optional<QUrl> updateFeed() {
    return safe(QStringLiteral(MORVANE_UPDATE_FEED));
}

std::optional<QByteArray> updateKey() {
    return UpdateSignature::decode(QStringLiteral(MORVANE_UPDATE_KEY), UpdateSignature::keyLength);
}

std::optional<QUrl> installCounter() {
    const QString host = QStringLiteral(MORVANE_COUNTER_HOST);
    return host.isEmpty() ? std::nullopt : safe(QStringLiteral("https://%1/api/install").arg(host));
}

QByteArray userAgent() {
    return "Morvane/" + version().toUtf8();
}

} // namespace morvane::BuildInfo
