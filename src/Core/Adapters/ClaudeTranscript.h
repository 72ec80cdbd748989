#pragma once

#include "Core/Agents/TranscriptReader.h"

/// The lines of Claude Code's transcripts and of its relatives'. Safe from any thread.
namespace morvane::ClaudeTranscript {

void takeLine(const JsonObject &line, TranscriptInfo &info);

/// Takes how the turn stands as well, as far as a release notes it.
void takeLineWithTurns(const JsonObject &line, TranscriptInfo &info);

/// The working directory, which most lines tell. The session is named by the file alone.
std::optional<TranscriptOrigin> findOrigin(const JsonObject &line);

} // namespace morvane::ClaudeTranscript
