#pragma once

#include "Core/Agents/TranscriptReader.h"

/// Reads the state of a turn from lines of the chats that Gemini CLI and Qwen Code write. Safe from
/// any thread.
namespace morvane::GeminiTranscript {

/// How much of the end is read: after an interruption Gemini CLI writes the whole chat twice.
constexpr qsizetype tailSize = 4'194'304;

void takeLine(const JsonObject &line, TranscriptInfo &info);

/// Takes an interruption or a running turn, but no failure, since Qwen Code may try again after an
/// error.
void takeLineOfQwen(const JsonObject &line, TranscriptInfo &info);

} // namespace morvane::GeminiTranscript
