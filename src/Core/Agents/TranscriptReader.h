#pragma once

#include "Core/Agents/TranscriptInfo.h"
#include "Core/Agents/TranscriptOrigin.h"

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace morvane {
class JsonObject;
}

/// Reads the transcripts that agents keep: files of JSON Lines, of any length, of which only the
/// end or the beginning is read. The form of a line is the agent's own and known to its adapter;
/// what can't be understood is skipped. Stateless; safe from any thread.
namespace morvane::TranscriptReader {

/// Fills in what a line tells, unless a newer line has told it.
using TakeLine = void (*)(const JsonObject &line, TranscriptInfo &info);

/// What the end of the file tells. Empty for a file that can't be read.
TranscriptInfo readTail(const QString &path, TakeLine takeLine, qsizetype size = 262'144);

/// What these lines tell; the last one is the newest. Empty when they aren't UTF-8.
TranscriptInfo newestFirst(QByteArrayView lines, TakeLine takeLine);

/// The session to which a line says that the transcript belongs, if it does.
using FindOrigin = std::optional<TranscriptOrigin> (*)(const JsonObject &line);

/// What `findOrigin` returns for the first line in which it finds something, within the first 65536
/// bytes of the file. None where these aren't UTF-8, apart from a character cut off at their end.
std::optional<TranscriptOrigin> readOrigin(const QString &path, FindOrigin findOrigin);

/// The text fit for one line on screen: trimmed, without line feeds, and cut to 120 characters as
/// a person counts them, with "…" behind. None for an empty text, and for one that begins with
/// "<" or "{", which is markup or data that was never meant for a person.
std::optional<QString> displayLine(const std::optional<QString> &text);

} // namespace morvane::TranscriptReader
