#pragma once

#include "Core/Agents/TranscriptReader.h"

/// The lines of Codex's transcripts. Safe from any thread.
namespace morvane::CodexTranscript {

void takeLine(const JsonObject &line, TranscriptInfo &info);

/// Session and working directory, which one line at the beginning tells.
std::optional<TranscriptOrigin> findOrigin(const JsonObject &line);

} // namespace morvane::CodexTranscript
