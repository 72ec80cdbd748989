#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Agents/TranscriptInfo.h"
#include "Core/Intake/HookEvent.h"
#include "Core/Sessions/DiscoveredSession.h"
#include "Core/Sessions/Session.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace morvane {

/// What a session learns from sources other than its hooks. The state rules get it as a parameter,
/// so that they stay pure.
struct SessionSurroundings {
    /// The branch that is checked out in a working directory.
    std::function<std::optional<QString>(const QString &cwd)> gitBranch;
    /// The person's own name for a working directory.
    std::function<std::optional<QString>(const QString &cwd)> customName;
    /// The hosting application's name, for a person.
    std::function<std::optional<QString>(const std::optional<QString> &hostBundleID,
                                         const std::optional<QString> &termProgram)>
        hostAppName;
};

/// What one event does to its session, whether a hook reports the event or it happens here: the
/// session afterwards, and what is to be done about it. The rules are pure; `SessionStore` carries
/// them out.
///
/// The state that each event leads to, by the session's state before:
///
///     event               none        working      needsInput   done        failed      idle
///     sessionStart        idle        idle (15)    idle (10,15) idle        idle        idle
///     promptSubmit        working     working      working      working     working     working
///     toolUse             working     working      working (9)  working     working     working
///     needsInput          needsInput  needsInput   needsInput   needsInput  needsInput  needsInput
///     idle                idle        done (1)     done (1)     -           -           -
///     turnEnd             done (2)    done (2)     done (2,10)  done (2)    done (2)    done (2)
///     turnFailed          failed      failed       failed       failed      failed      failed
///     subagent's toolUse  ignored     -            - (13)       -           -           -
///     subagentStop        ignored     - (11)       - (11,13)    -           -           -
///     sessionEnd          ignored     removed      removed      removed     removed     removed
///     permissionRequest   needsInput  needsInput   needsInput   needsInput  needsInput  needsInput
///
///     decided (3)         ignored     working      working (14) working     working     working
///     answered (4)        ignored     working      working (14) working     working     working
///     expired (5)         ignored     -            -            -           -           -
///     released (5)        ignored     -            -            -           -           -
///     hungUp (5)          ignored     - (11)       - (11,13)    -           -           -
///     turnGone (7)        ignored     idle (8)     idle (8)     - (12)      -           -
///     restored            idle (6)    ignored      ignored      ignored     ignored     ignored
///
///     (1) unchanged while background agents or a decision are pending, and by the end of a
///         background agent while the terminal asks
///     (2) working while the event lists background agents, or needsInput if one of them asks;
///         needsInput also while a subagent asks whose agent doesn't list them
///     (3) needsInput after `ask`; ignored without a pending approval
///     (4) unchanged while a question is open; ignored without pending questions
///     (5) ignored without a pending decision
///     (6) ignored if it was last active too long ago
///     (7) unchanged while a decision is pending
///     (8) failed if that is how the turn ended
///     (9) while a decision is pending: unchanged by the announcement of that very call, and by
///         any call if the agent's terminal asks only after the hook
///     (10) unchanged while a subagent's decision is pending
///     (11) done if the turn was over already, and only a subagent that had asked went on
///     (12) failed if that is how the turn ended
///     (13) working if the subagent was the last one that asked
///     (14) unchanged while somebody else asks, in the terminal
///     (15) unchanged by a compaction of the context
struct SessionTransition {
    Q_DECLARE_TR_FUNCTIONS(SessionTransition)

public:
    /// A decision that goes back to the hook that waits for it.
    struct Resolution {
        QString decisionID;
        AgentDecision decision;

        friend bool operator==(const Resolution &, const Resolution &) = default;
    };

    enum class Write {
        nothing, ///< the session stays exactly as it is, and nobody is told
        store,   ///< the session is stored as it stands here
        remove,  ///< the session goes
    };

    /// How a turn ends whose end no hook reports.
    enum class TurnEnd { interrupted, failed };

    Write write = Write::nothing;
    Session session;
    QStringList releases;         ///< decisions to give up: resolved with `ask` before the write
    bool readsTranscript = false; ///< after the write
    /// Answers the hook that the session waited with. It is resolved after the write, since what
    /// follows from it must find the session changed.
    std::optional<Resolution> resolution = std::nullopt;

    /// The transition that only stores the session.
    static SessionTransition store(Session &&session);

    /// Removes the decision that the session waits for, whoever has made it.
    static void forgetDecision(Session &session);

    /// The asker no longer waits; the session works on once nobody waits.
    static void settle(Session &session, const QString &asker);

    /// A subagent has ended, and its request with it. If the session's own turn was over already,
    /// the session is done once nobody waits any more.
    static void endSubagent(Session &session, const QString &subagent);

    /// The rule for this event. `before` is the stored session, null where there is none.
    static SessionTransition of(const Session *before, const HookEvent &event, Date now,
                                const SessionSurroundings &surroundings);

    /// True for the events that leave nothing to decide for the hook that waits; it is released
    /// before the event's own rule runs. A subagent's request outlives its session's turn.
    static bool endsPendingDecision(const Session &session, const HookEvent &event);

    /// True for the events of a subagent that matter to its session: most must not disturb the
    /// session that launched it.
    static bool concernsSession(const Session *before, const HookEvent &event);

    /// A person has decided about the tool call that the session waits with.
    static SessionTransition decided(Session session, const AgentDecision &decision, Date now);

    /// A person has chosen an option of one question; answering the last one sends all answers.
    static SessionTransition answered(Session session, const QString &question,
                                      const QString &option, Date now);

    /// The server has given up the hook that the session waits with; no answer reaches it any more.
    static SessionTransition expired(Session session);

    /// The hook that the session waits with has been ended: the person has interrupted the agent or
    /// answered it in its terminal, and so knows of it. A subagent's hook says nothing about the
    /// session's own turn.
    static SessionTransition hungUp(Session session, Date now);

    /// The turn has ended without a hook, or with one that doesn't say how.
    static SessionTransition turnGone(Session session, TurnEnd end, Date now);

    /// The same, reported by a transcript; ignored if that reports no such end, or only an older
    /// turn's.
    static SessionTransition endedWithoutHook(Session session, const TranscriptInfo &info,
                                              Date now);

    /// A transcript reports the session's model, context, permission mode and title, and `words` is
    /// the new summary; ignored if none of this is new.
    static SessionTransition informed(const Session &before, const TranscriptInfo &info,
                                      const std::optional<QString> &words);

    /// The hook's decision can't be made here any more, so the agent is to ask by itself.
    static SessionTransition released(Session session);

    /// A session was found on disk. `before` is the stored session of its id, if there is one; a
    /// session that was last active before `oldest` would be cleared at once, and isn't added.
    static SessionTransition restored(const Session *before, const DiscoveredSession &found,
                                      Date oldest, const SessionSurroundings &surroundings);
};

} // namespace morvane
