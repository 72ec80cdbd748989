#pragma once

#include "Platform/Time.h"

#include <QString>

/// The short time texts of rows and the capsule. Pure functions.
namespace morvane::TimeFormat {

/// How long something has lasted: "42s", "17m", "2h05". A future start counts as now.
QString elapsed(Date since, Date asOf);

} // namespace morvane::TimeFormat
