#pragma once

#include <QString>

#include <optional>

/// Reads what agents write for people. Stateless; safe from any thread.
namespace morvane::TranscriptReader {

/// The text fit for one line on screen: trimmed, without line feeds, and cut to 120 characters as
/// a person counts them, with "…" behind. None for an empty text, and for one that begins with
/// "<" or "{", which is markup or data that was never meant for a person.
std::optional<QString> displayLine(const std::optional<QString> &text);

} // namespace morvane::TranscriptReader
