#include "Core/Shell/UpdateFeed.h"

#include "Core/Ground/BoundedText.h"
#include "Core/Ground/JsonObject.h"
#include "Core/Ground/VisibleText.h"
#include "Core/Shell/UpdateSignature.h"

#include <QRegularExpression>
#include <QVersionNumber>

#include <algorithm>

namespace morvane::UpdateFeed {

namespace {

constexpr qsizetype mostLines = 200;

bool isVersion(const QString &text) {
    static const QRegularExpression numbers(QStringLiteral("\\A[0-9]{1,6}(\\.[0-9]{1,6}){0,3}\\z"));
    return numbers.match(text).hasMatch();
}

/// The package's address, which may be relative to the feed's. The feed chooses only the path:
/// scheme and server must be those of the feed.
std::optional<QUrl> packageURL(const QString &place, const QUrl &address) {
    const QUrl result = address.resolved(QUrl(place, QUrl::StrictMode));
    const bool isThere = result.isValid() && result.scheme() == address.scheme() &&
                         result.authority() == address.authority();
    return isThere && !place.isEmpty() ? std::optional(result) : std::nullopt;
}

QString readable(QString notes) {
    notes.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines = notes.split(QLatin1Char('\n')).mid(0, mostLines);
    for (QString &line : lines) {
        line = VisibleText::of(BoundedText::of(line, BoundedText::paragraphLength));
    }
    return lines.join(QLatin1Char('\n')).trimmed();
}

} // namespace

std::optional<UpdateOffer> parse(const QByteArray &bytes, const QUrl &address) {
    const auto feed = bytes.size() <= longestFeed ? JsonObject::parse(bytes) : std::nullopt;
    if (!feed) {
        return std::nullopt;
    }
    const auto version = feed->string("version");
    const auto place = feed->string("package");
    const auto signature = feed->string("signature");
    const auto notes = feed->string("notes");
    std::int64_t size = 0;
    if (!version || !isVersion(*version) || !place || !signature || !notes ||
        feed->root()["size"].get(size) != simdjson::SUCCESS || size < 1 || size > longestPackage) {
        return std::nullopt;
    }
    const auto package = packageURL(*place, address);
    const auto decoded = UpdateSignature::decode(*signature, UpdateSignature::length);
    if (!package || !decoded) {
        return std::nullopt;
    }
    return UpdateOffer{*version, *package, static_cast<qsizetype>(size), *decoded,
                       readable(*notes)};
}

bool isLater(const QString &version, const QString &other) {
    return QVersionNumber::fromString(version).normalized() >
           QVersionNumber::fromString(other).normalized();
}

} // namespace morvane::UpdateFeed
