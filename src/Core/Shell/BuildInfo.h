#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

/// Which program this is, for a person and for the servers of its maker.
namespace morvane::BuildInfo {

QString version();

/// Tells builds of the same version apart.
QString build();

/// When this program's file was written; none if that is unknown.
std::optional<QDateTime> builtAt();

/// The same in words of the person's own locale.
QString builtAtDescription();

/// Where people who use Morvane meet; none for a build that was given no such place.
std::optional<QUrl> communityURL();

// How this program deals with the maker's server. Each value is none in a build that was given
// none, or one that can't be trusted.

/// Where newer versions are announced.
std::optional<QUrl> updateFeed();

/// The Ed25519 public key that verifies updates, 32 bytes.
std::optional<QByteArray> updateKey();

/// Where installations are counted.
std::optional<QUrl> installCounter();

/// The User-Agent that this program sends: "Morvane/1.2".
QByteArray userAgent();

} // namespace morvane::BuildInfo
