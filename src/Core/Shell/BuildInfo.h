#pragma once

#include <QString>

/// Which program this is, for a person.
namespace morvane::BuildInfo {

QString version();

/// Tells apart what was given out under one version.
QString build();

} // namespace morvane::BuildInfo
