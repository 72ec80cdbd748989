#pragma once

#include "Core/Agents/AgentKind.h"
#include "Core/Agents/AgentQuestion.h"
#include "Core/Agents/CanonicalEvent.h"
#include "Core/Agents/PaneLocator.h"
#include "Core/Agents/ReadableInput.h"
#include "Core/Intake/HookOrigin.h"
#include "Platform/Processes.h"

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace morvane {

class AgentAdapter;

/// Something that an agent still has running when its turn ends.
struct BackgroundTask {
    QString type; ///< the agent's own word, such as "subagent" or "shell"
    std::optional<QString> description;

    friend bool operator==(const BackgroundTask &, const BackgroundTask &) = default;
};

/// One hook of one agent, normalised. A plain value: it is built on the server's thread and
/// crosses to the main thread by copy.
///
/// A text is only taken where the payload holds a JSON string; a value of another type under the
/// same key counts as missing.
struct HookEvent {
    AgentKind agent = defaultAgentKind;
    CanonicalEvent kind = CanonicalEvent::sessionStart;
    QString nativeName; ///< the agent's own name of the event
    QString sessionID;  ///< never empty
    std::optional<QString> cwd;
    std::optional<QString> toolName;
    std::optional<QString> toolUseID;
    std::optional<QString> toolDetail; ///< what the tool works on, one line
    ReadableInput toolInput;           ///< the whole input of a tool that asks for permission
    /// Equal for a call's announcement and its request for permission, where the agent may send
    /// them in either order; else empty.
    QByteArray callDigest;
    std::optional<QList<AgentQuestion>> questions;
    std::optional<QString> responseMessage; ///< what the agent says to the person, one line
    std::optional<QString> taskDescription; ///< what a subagent is for, one line
    std::optional<QString> prompt;          ///< what the person asked, one line
    std::optional<QString> transcriptPath;
    std::optional<QString> agentID; ///< set when the event comes from inside a subagent
    bool launchesSubagent = false;  ///< the tool launches one
    bool asksForSubagent = false;   ///< a subagent's request, which can be answered like any other
    bool asksAnew = false; ///< the agent asks for each such call, whatever it was told before
    /// The agent's last words of the turn that has ended, one line; empty if there are none. Absent
    /// if only the transcript can tell.
    std::optional<QString> lastWords;
    bool isCompaction = false;          ///< the context has been compacted, and the session goes on
    bool isOfBackground = false;        ///< a background agent has ended
    bool asksAfterHook = false;         ///< the terminal asks only once the hook has ended
    bool endsTurnsInTranscript = false; ///< a turn may end without a hook
    bool titlesLag = false;             ///< while a turn runs, the title is that of the turn before
    QList<BackgroundTask> backgroundTasks;
    std::optional<QString> itermSessionID;
    std::optional<QString> termProgram;
    std::optional<QString> hostBundleID;
    std::optional<QString> ttyName;
    PaneLocator pane;
    std::optional<ProcessIdentity> process;
    std::optional<QString> decisionID; ///< set by the server when the hook waits for a decision

    /// Reads a hook's payload. None for a body that is no JSON object, has no session id, or
    /// belongs to an event that the agent's adapter doesn't know or to a prompt that the agent
    /// gives itself. Safe from any thread.
    static std::optional<HookEvent> decode(const AgentAdapter &adapter, const QString &nativeName,
                                           QByteArrayView body, const HookOrigin &origin);

    /// The background tasks that are agents themselves, in their order.
    QList<BackgroundTask> pendingAgents() const;

    friend bool operator==(const HookEvent &, const HookEvent &) = default;
};

} // namespace morvane
