#pragma once

#include "Core/Agents/TranscriptReader.h"

/// The lines of the chats that Gemini CLI and Qwen Code write down, as far as they tell how a turn
/// stands. Safe from any thread.
namespace morvane::GeminiTranscript {

/// Takes as the last words what has failed.
void takeLine(const JsonObject &line, TranscriptInfo &info);

/// Takes an interruption only, since after an error Qwen Code may try again.
void takeLineOfQwen(const JsonObject &line, TranscriptInfo &info);

} // namespace morvane::GeminiTranscript
