#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

/// Which program this is, for a person and for the servers of its maker.
namespace morvane::BuildInfo {

QString version();

/// Tells apart what was given out under one version.
QString build();

/// When this program's file was made; none where that can't be told.
std::optional<QDateTime> builtAt();

/// The same in words of the person's own locale.
QString builtAtDescription();

/// Where people who use Morvane meet; none for a build that was given no such place.
std::optional<QUrl> communityURL();

// What this program is to the maker's own server. Each is none for a build that was given none, or
// none that could be trusted.

/// Where newer versions are told of.
std::optional<QUrl> updateFeed();

/// The Ed25519 key by which updates are known to be the maker's, 32 bytes.
std::optional<QByteArray> updateKey();

/// Where installations are counted.
std::optional<QUrl> installCounter();

/// How this program names itself to it: "Morvane/1.2".
QByteArray userAgent();

} // namespace morvane::BuildInfo
