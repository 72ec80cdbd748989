#pragma once

#include "Core/Agents/AgentKind.h"
#include "Core/Agents/PaneLocator.h"
#include "Platform/Time.h"

#include <QString>

#include <optional>

namespace morvane {

struct Session;

/// A small snapshot of a session at its completion, one per working directory. It outlives the
/// session, and carries what is needed to show it and to find its terminal again.
struct CompletedRecord {
    QString id; ///< the working directory, or the session's id where that is unknown
    QString name;
    QString cwd;
    std::optional<QString> gitBranch;
    std::optional<QString> itermSessionID;
    std::optional<QString> termProgram;
    std::optional<QString> hostBundleID;
    Date finishedAt;
    std::optional<QString> lastPrompt;
    std::optional<QString> summary;
    std::optional<AgentKind> agent;
    std::optional<QString> hostAppName;
    bool failed = false;
    std::optional<PaneLocator> pane; ///< absent unless it locates a pane
    std::optional<QString> ttyName;

    static CompletedRecord of(const Session &session, Date finishedAt);

    /// The `id` that a record of this session has.
    static QString idFor(const Session &session);

    friend bool operator==(const CompletedRecord &, const CompletedRecord &) = default;
};

} // namespace morvane
