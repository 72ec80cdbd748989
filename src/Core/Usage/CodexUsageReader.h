#pragma once

#include "Core/Usage/Usage.h"
#include "Platform/Result.h"
#include "Platform/Scheduler.h"

namespace morvane {
class ToolDialogue;
}

/// Asks Codex itself for its account's limits, by briefly starting it as a server that may neither
/// run anything nor ask for approval. Stateless; blocks for up to some 16 seconds, so not for the
/// main thread.
namespace morvane::CodexUsageReader {

/// The limits, or why there are none, for a person. `version` is this program's.
Result<CodexUsage> read(ToolDialogue &dialogue, const QString &version, const Scheduler &clock);

} // namespace morvane::CodexUsageReader
