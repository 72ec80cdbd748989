#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

/// Which program this is, for a person.
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

} // namespace morvane::BuildInfo
