#pragma once

#include "Core/Agents/TranscriptReader.h"

/// Factory's transcripts. Safe from any thread.
namespace morvane::FactoryTranscript {

/// The last words of the newest turn, and how that stands. A line that isn't of Factory's own form
/// is taken as one of Claude Code's.
TranscriptInfo read(const QString &path);

} // namespace morvane::FactoryTranscript
