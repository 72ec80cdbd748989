#pragma once

#include "Platform/Time.h"

#include <QString>

/// The short time texts of rows and the capsule. Pure functions.
namespace morvane::TimeFormat {

/// How long something has lasted: "42s", "17m", "2h05". A future start counts as now.
QString elapsed(Date since, Date asOf);

/// How long ago something was: "just now", "17m ago", "2h ago", "3d ago".
QString ago(Date date, Date from);

/// How long it is until then: "3d", "2h", "17m", always rounded down. "0m" for what is past.
QString remaining(Date until, Date from);

/// How long it takes until `ago` gives another text.
Seconds untilAgoChanges(Date date, Date from);

/// How long it takes until `remaining` gives another text; `until` must be still to come.
Seconds untilRemainingChanges(Date until, Date from);

} // namespace morvane::TimeFormat
