#pragma once

#include "Core/Agents/TranscriptReader.h"

/// Reads lines of Codex's transcripts. Safe from any thread.
namespace morvane::CodexTranscript {

void takeLine(const JsonObject &line, TranscriptInfo &info);

/// The same for releases in which a message of any phase may be the last words.
void takeLineOfAnyPhase(const JsonObject &line, TranscriptInfo &info);

/// Session, working directory and release, all told by one line at the beginning.
std::optional<TranscriptOrigin> findOrigin(const JsonObject &line);

} // namespace morvane::CodexTranscript
