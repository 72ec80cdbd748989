#pragma once

#include "Core/Agents/TranscriptReader.h"

/// Factory's transcripts. Safe from any thread.
namespace morvane::FactoryTranscript {

/// The last words of the newest turn, and its state. A line that isn't in Factory's own form is
/// read as one of Claude Code's.
TranscriptInfo read(const QString &path);

} // namespace morvane::FactoryTranscript
