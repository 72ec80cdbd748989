#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace morvane {

/// A version that can be had, as the feed tells of it. Only the signature says that the package is
/// ours, and only the package itself which version it is.
struct UpdateOffer {
    QString version;      ///< numbers with dots between them
    QUrl package;         ///< on the feed's own server
    qsizetype size = 0;   ///< of the package, in bytes
    QByteArray signature; ///< by Ed25519, over all bytes of the package
    QString notes;        ///< plain text for a person, in lines, in which everything can be seen
};

/// The feed of updates: a JSON object of ours, which scripts/sign-release makes, and which
/// docs/updates.md describes. Safe from any thread.
namespace UpdateFeed {

/// What the feed at this address says; none where it says anything that it may not. Whoever wrote
/// it need not be a friend: neither a length nor a character of it goes any further unchecked.
std::optional<UpdateOffer> parse(const QByteArray &bytes, const QUrl &address);

/// Whether the version comes after the other one. Both are numbers with dots between them.
bool isLater(const QString &version, const QString &other);

/// The longest feed that is read, and the longest package, in bytes.
inline constexpr qsizetype longestFeed = 65'536;
inline constexpr qsizetype longestPackage = 67'108'864;

} // namespace UpdateFeed

} // namespace morvane
