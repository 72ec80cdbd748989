#pragma once

#include "Core/Agents/TranscriptReader.h"

/// Reads lines of the transcripts of Claude Code and its relatives. Safe from any thread.
namespace morvane::ClaudeTranscript {

void takeLine(const JsonObject &line, TranscriptInfo &info);

/// Also takes the turn's state, as far as a release records it.
void takeLineWithTurns(const JsonObject &line, TranscriptInfo &info);

/// The working directory, which most lines tell. Only the file's name tells the session.
std::optional<TranscriptOrigin> findOrigin(const JsonObject &line);

} // namespace morvane::ClaudeTranscript
