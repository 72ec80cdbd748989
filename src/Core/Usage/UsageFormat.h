#pragma once

#include "Core/Usage/Usage.h"

#include <QByteArray>
#include <QJsonValue>

#include <optional>

/// Parses the formats in which limits arrive. Qt's reader accepts half a surrogate pair in a
/// neighbouring text, and leaves the numbers as they are. Pure functions.
namespace morvane::UsageFormat {

/// The body of the usage endpoint. None when it tells neither of the two common windows.
std::optional<Usage> parse(const QByteArray &body, Date now);

/// What Claude Code hands its status line. None when it tells no limit; the windows that it leaves
/// out are absent.
std::optional<Usage> parseLive(const QByteArray &body, Date now);

/// A line of Codex's that answers what its limits are. None when it tells none.
std::optional<CodexUsage> parseCodex(const QByteArray &line, Date now);

/// A number, and never a text that holds one.
std::optional<double> doubleValue(const QJsonValue &value);

/// A moment as a text of ISO 8601 with its zone, or as seconds or milliseconds since 1970. None for
/// anything else, and for a moment that our clock can't hold.
std::optional<Date> date(const QJsonValue &value);

/// A moment as seconds since 1970, under the same bound.
std::optional<Date> dateAt(double seconds);

} // namespace morvane::UsageFormat
