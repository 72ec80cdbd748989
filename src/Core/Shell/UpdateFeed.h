#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace morvane {

/// A version on offer, as the feed describes it. Only the signature proves that the package is
/// ours, and only the package itself says which version it is.
struct UpdateOffer {
    QString version;      ///< numbers with dots between them
    QUrl package;         ///< on the feed's own server
    qsizetype size = 0;   ///< of the package, in bytes
    QByteArray signature; ///< by Ed25519, over all bytes of the package
    QString notes;        ///< plain text for a person, in lines, all of it made visible
};

/// The update feed: a JSON object that scripts/sign-release makes and docs/updates.md describes.
/// Safe from any thread.
namespace UpdateFeed {

/// Parses the feed from this address; none if it holds anything invalid. Its author may be hostile,
/// so every length and every character is checked before it goes any further.
std::optional<UpdateOffer> parse(const QByteArray &bytes, const QUrl &address);

/// Whether the version comes after the other one. Both are numbers with dots between them.
bool isLater(const QString &version, const QString &other);

/// The longest feed that is read, and the longest package, in bytes.
inline constexpr qsizetype longestFeed = 65'536;
inline constexpr qsizetype longestPackage = 67'108'864;

} // namespace UpdateFeed

} // namespace morvane
