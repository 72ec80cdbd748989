#pragma once

#include "Core/Agents/TranscriptInfo.h"

#include <QByteArrayView>
#include <QString>

#include <optional>

/// Reads what agents write for people, and what they keep of a conversation: a file of JSON Lines,
/// of which the end is read, at most 262144 bytes however long it is. Each field comes from the
/// newest line that has it; what can't be understood is passed over. Stateless; safe from any
/// thread.
namespace morvane::TranscriptReader {

/// Of Claude Code's transcript and its relatives'. Empty for a file that can't be read.
TranscriptInfo readClaude(const QString &path);

/// Of Codex's transcript. Empty for a file that can't be read.
TranscriptInfo readCodex(const QString &path);

/// The same of text that has been read already; empty when it isn't UTF-8.
TranscriptInfo claudeInfo(QByteArrayView lines);
TranscriptInfo codexInfo(QByteArrayView lines);

/// The text fit for one line on screen: trimmed, without line feeds, and cut to 120 characters as
/// a person counts them, with "…" behind. None for an empty text, and for one that begins with
/// "<" or "{", which is markup or data that was never meant for a person.
std::optional<QString> displayLine(const std::optional<QString> &text);

} // namespace morvane::TranscriptReader
