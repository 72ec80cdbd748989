#include "Core/Shell/BuildInfo.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>

namespace morvane::BuildInfo {

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
    const QUrl address(QStringLiteral(MORVANE_COMMUNITY_URL));
    return address.isValid() && address.scheme() == QLatin1String("https") ? std::optional(address)
                                                                           : std::nullopt;
}

} // namespace morvane::BuildInfo
