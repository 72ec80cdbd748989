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

/// What a session learns from outside of its hooks. The rules of the states take it as a value, so
/// that they stay pure.
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

/// What one event does to its session, whether a hook tells it or it happens to the session here:
/// the session as it comes out, and what is to be done about it. The rules are pure;
/// `SessionStore` carries them out.
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
///     (1) unchanged while background agents are pending, or a decision; by the end of a background
///         agent also while the terminal asks
///     (2) working while the event lists background agents, needsInput where one of these asks, or
///         a subagent of an agent that lists none
///     (3) needsInput after `ask`; ignored without an approval that waits
///     (4) unchanged while a question is open; ignored without questions that wait
///     (5) ignored without a decision that waits
///     (6) ignored when it was last active too long ago
///     (7) unchanged while a decision waits
///     (8) failed where that is what ended it
///     (9) unchanged by the announcement of the very call that waits, and by others where no
///         terminal asks for it meanwhile
///     (10) unchanged while a subagent waits with a call
///     (11) done where the turn was over before, and only a subagent that had asked went on
///     (12) failed where that is how it ended
///     (13) working where the subagent was the last one that asked
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

    /// How a turn ends that no hook tells the end of.
    enum class TurnEnd { interrupted, failed };

    Write write = Write::nothing;
    Session session;
    QStringList releases; ///< decisions that give way, to be resolved with `ask` before the write
    bool readsTranscript = false; ///< after the write
    /// What lets go the hook that the session waited with, to be resolved after the write: what
    /// comes of it must find the session moved.
    std::optional<Resolution> resolution = std::nullopt;

    /// The session is stored as it stands here, and that is all.
    static SessionTransition store(Session &&session);

    /// Takes from the session what it waits with, whoever has dealt with it.
    static void forgetDecision(Session &session);

    /// Whoever has asked waits no more; the session works on once nobody does.
    static void settle(Session &session, const QString &asker);

    /// A subagent is at its end, and so is what it asked. Where the session's own turn was over
    /// before, the session is done with the last one that went on.
    static void endSubagent(Session &session, const QString &subagent);

    /// The rule for this event. `before` is the stored session, null where there is none.
    static SessionTransition of(const Session *before, const HookEvent &event, Date now,
                                const SessionSurroundings &surroundings);

    /// True for the events that end what a hook was waiting for; such a decision is released
    /// before the event's own rule runs. What a subagent asks outlives the turn of its session.
    static bool endsPendingDecision(const Session &session, const HookEvent &event);

    /// True for what a subagent tells that its session has to hear: most of it must not disturb
    /// the session that launched it.
    static bool concernsSession(const Session *before, const HookEvent &event);

    /// A person has decided about the tool call that the session waits with.
    static SessionTransition decided(Session session, const AgentDecision &decision, Date now);

    /// A person has chosen an option of one question; the last one to be answered sends them all.
    static SessionTransition answered(Session session, const QString &question,
                                      const QString &option, Date now);

    /// The server has given up the hook that the session waits with, which is past any answer.
    static SessionTransition expired(Session session);

    /// The hook that the session waits with has been ended: the person has interrupted the agent
    /// or answered it in its terminal, and knows of it. A subagent's says nothing of the session's
    /// own turn.
    static SessionTransition hungUp(Session session, Date now);

    /// The turn has ended without a hook, or with one that doesn't say how.
    static SessionTransition turnGone(Session session, TurnEnd end, Date now);

    /// The same, as a transcript tells it; ignored where it tells of no such end, or of an older
    /// turn's.
    static SessionTransition endedUnsaid(Session session, const TranscriptInfo &info, Date now);

    /// A transcript tells what the session is running with, and `words` what was said last; ignored
    /// where nothing of that is new.
    static SessionTransition informed(const Session &before, const TranscriptInfo &info,
                                      const std::optional<QString> &words);

    /// What the hook waits for has lost its reason, so that the agent is to ask by itself.
    static SessionTransition released(Session session);

    /// A session was found on disk. `before` is the stored session of its id, if there is one;
    /// what was last active before `oldest` would be cleared at once, and isn't entered.
    static SessionTransition restored(const Session *before, const DiscoveredSession &found,
                                      Date oldest, const SessionSurroundings &surroundings);
};

} // namespace morvane
