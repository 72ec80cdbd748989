#pragma once

#include "Core/Agents/AgentRelease.h"

#include <QString>

#include <optional>

namespace morvane {

/// The session that a transcript belongs to.
struct TranscriptOrigin {
    QString sessionID;
    QString cwd;       ///< empty where the transcript doesn't tell
    QString root = {}; ///< the session that this one works for, or itself; empty where it's untold
    std::optional<AgentRelease> release = {}; ///< that wrote the transcript, where it tells
};

/// Where an agent keeps the transcripts of all its sessions: files that end in ".jsonl".
struct TranscriptFolder {
    enum class Depth {
        oneBelow, ///< in the folders of the folder
        any,      ///< in folders of any depth, but for hidden ones and links
    };

    QString path; ///< absolute
    Depth depth = Depth::oneBelow;
};

} // namespace morvane
