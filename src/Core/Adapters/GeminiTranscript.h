#pragma once

#include "Core/Agents/TranscriptReader.h"

/// The lines of the chats that Gemini CLI and Qwen Code write down, as far as they tell how a turn
/// stands. Safe from any thread.
namespace morvane::GeminiTranscript {

/// How much of the end may follow on an interruption, after which Gemini CLI writes the whole chat
/// down twice.
constexpr qsizetype tailSize = 4'194'304;

void takeLine(const JsonObject &line, TranscriptInfo &info);

/// Takes an interruption, or a turn that runs, but no failure, since after an error Qwen Code may
/// try again.
void takeLineOfQwen(const JsonObject &line, TranscriptInfo &info);

} // namespace morvane::GeminiTranscript
