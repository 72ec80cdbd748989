#pragma once

#include "Core/Agents/TranscriptInfo.h"
#include "Core/Agents/TranscriptOrigin.h"

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace morvane {
class JsonObject;
}

/// Reads what agents keep of a conversation: a file of JSON Lines, which may be of any length and
/// of which only the end or the beginning is read. What a line says is the agent's own, and known
/// by its adapter; what can't be understood is passed over. Stateless; safe from any thread.
namespace morvane::TranscriptReader {

/// Fills in what a line tells and no newer one has told.
using TakeLine = void (*)(const JsonObject &line, TranscriptInfo &info);

/// What the end of the file tells. Empty for a file that can't be read.
TranscriptInfo readTail(const QString &path, TakeLine takeLine, qsizetype size = 262'144);

/// What these lines tell, the newest of which is the last. Empty when they aren't UTF-8.
TranscriptInfo newestFirst(QByteArrayView lines, TakeLine takeLine);

/// Whose session a line tells the transcript to be, if it does.
using FindOrigin = std::optional<TranscriptOrigin> (*)(const JsonObject &line);

/// What the first of the lines says that says it, within the first 65536 bytes of the file. None
/// where these aren't UTF-8, but for a character that is cut at their end.
std::optional<TranscriptOrigin> readOrigin(const QString &path, FindOrigin findOrigin);

/// The text fit for one line on screen: trimmed, without line feeds, and cut to 120 characters as
/// a person counts them, with "…" behind. None for an empty text, and for one that begins with
/// "<" or "{", which is markup or data that was never meant for a person.
std::optional<QString> displayLine(const std::optional<QString> &text);

} // namespace morvane::TranscriptReader
