#pragma once

#include "Core/Agents/AgentKind.h"
#include "Core/Agents/PaneLocator.h"
#include "Core/Sessions/PendingApproval.h"
#include "Core/Sessions/PendingExternalResponse.h"
#include "Core/Sessions/PendingQuestion.h"
#include "Core/Sessions/SessionState.h"
#include "Platform/Processes.h"
#include "Platform/Time.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>
#include <QString>
#include <QUuid>

namespace morvane {

/// A subagent that a session started in its present turn.
struct Subagent {
    QUuid id;
    QString task;
    bool done = false;

    friend bool operator==(const Subagent &, const Subagent &) = default;
};

/// How close a session's context comes to a standard window of 200,000 tokens.
enum class ContextPressure {
    comfortable,
    filling, ///< from 140,000
    tight,   ///< from 180,000
    large,   ///< from 200,000: a larger window than the standard one, so nothing to warn of
};

/// One live session of an agent. `SessionStore` is the only writer; everybody else reads copies.
///
/// At most one of `pendingApproval` and `pendingQuestion` is set, and neither together with a
/// `pendingExternalResponse`.
struct Session {
    Q_DECLARE_TR_FUNCTIONS(Session)

public:
    QString id; ///< the agent's session id; never changes
    AgentKind agent = defaultAgentKind;
    SessionState state = SessionState::idle;
    QString cwd; ///< working directory, empty when unknown
    std::optional<QString> itermSessionID;
    std::optional<QString> termProgram;
    std::optional<QString> hostBundleID;
    std::optional<QString> ttyName;
    std::optional<ProcessIdentity> process; ///< ran the last hook; most often the agent
    PaneLocator pane;
    std::optional<QString> hostAppName; ///< the hosting application's name, for a person
    std::optional<QString> currentTool;
    Date startedAt;
    Date lastEventAt;
    Date stateChangedAt; ///< when `state` last changed, or a turn last began
    std::optional<QString> gitBranch;
    std::optional<QString> customName; ///< the person's own name for the working directory
    bool acknowledged = true;          ///< false while the state still calls for attention
    QList<Subagent> subagents;         ///< of this turn, in the order of their start
    qsizetype pendingAgents = 0;       ///< background agents still running at the turn's end
    std::optional<QString> lastPrompt;
    Date atWorkSince; ///< when the last prompt came, or a rest ended without one
    std::optional<QString> transcriptPath;
    std::optional<QString> model;
    std::optional<int> contextTokens; ///< of the last request
    std::optional<QString> permissionMode;
    std::optional<QString> aiTitle;
    std::optional<QString> summary; ///< the last assistant line, once a turn has ended
    std::optional<PendingApproval> pendingApproval;
    std::optional<PendingQuestion> pendingQuestion;
    std::optional<PendingExternalResponse> pendingExternalResponse;
    QByteArray pendingCallDigest; ///< `HookEvent::callDigest` of the hook that waits
    QString pendingSubagent;      ///< the subagent that made it; empty for the session's own
    /// Who has asked and hasn't been heard from since, and so waits for a person, here or in the
    /// terminal: subagents by their ids, the session itself by an empty id. Empty at rest.
    QSet<QString> askers;
    bool endsTurnsInTranscript = false; ///< a turn may end without a hook
    bool subagentGoesOn = false; ///< one that asked goes on, though the session's own turn is over
    bool titlesLag = false;      ///< while a turn runs, `aiTitle` is that of the turn before

    /// The name on the session's row: the person's own, else the folder's, else "session".
    QString displayName() const;

    /// The default name of a working directory: the folder's, "/" for the root, and "session" if it
    /// is empty.
    static QString nameOf(const QString &cwd);

    /// The context's size in whole thousands, such as "137k"; below a thousand, the number.
    std::optional<QString> contextLabel() const;

    std::optional<ContextPressure> contextPressure() const;

    /// The permission mode, where it isn't the agent's usual one.
    std::optional<QString> notablePermissionMode() const;

    /// The id of the decision that a hook of this session waits for.
    std::optional<QString> pendingDecisionID() const;

    /// True while a turn runs, or waits for a person.
    bool isAtWork() const;

    /// True once a turn has come to its end, well or not.
    bool isFinished() const;

    friend bool operator==(const Session &, const Session &) = default;
};

/// By their ids.
using Sessions = QHash<QString, Session>;

} // namespace morvane
