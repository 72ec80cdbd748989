#pragma once

#include "Core/Agents/TranscriptReader.h"

/// The lines of Codex's transcripts. Safe from any thread.
namespace morvane::CodexTranscript {

void takeLine(const JsonObject &line, TranscriptInfo &info);

/// The same, of the releases whose every message is one that a person may read as the last.
void takeLineOfAnyPhase(const JsonObject &line, TranscriptInfo &info);

/// Session, working directory and release, which one line at the beginning tells.
std::optional<TranscriptOrigin> findOrigin(const JsonObject &line);

} // namespace morvane::CodexTranscript
