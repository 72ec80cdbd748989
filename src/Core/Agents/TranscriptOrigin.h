#pragma once

#include "Core/Agents/AgentRelease.h"

#include <QString>

#include <optional>

namespace morvane {

/// The session that a transcript belongs to.
struct TranscriptOrigin {
    QString sessionID;
    QString cwd;       ///< empty where the transcript doesn't tell
    QString root = {}; ///< the session that this one works for, or itself; empty if unknown
    std::optional<AgentRelease> release = {}; ///< the release that wrote the transcript, if known
};

/// Where an agent keeps the transcripts of all its sessions: files that end in ".jsonl".
struct TranscriptFolder {
    enum class Depth {
        oneBelow, ///< directly in its subfolders
        any,      ///< in subfolders of any depth, except hidden ones and links
    };

    QString path; ///< absolute
    Depth depth = Depth::oneBelow;
};

} // namespace morvane
