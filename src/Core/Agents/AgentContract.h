#pragma once

#include <QLatin1String>

namespace morvane {

/// Where a release of an agent speaks otherwise than the contract that was written down first. That
/// one is the value as it is made, and what every release gets that isn't known to differ. A plain
/// value, fixed with the adapter that it is given to.
struct AgentContract {
    /// How a decision is told that the agent shall remember.
    enum class Remembering {
        oneRule,    ///< an object of rule, action and duration
        ruleUpdate, ///< a list of changes of the permission rules
    };

    /// How long a hook may take stands in its entry, in this unit.
    enum class TimeUnit { seconds, milliseconds };

    Remembering remembering = Remembering::oneRule;

    TimeUnit hookTimeUnit = TimeUnit::seconds;

    /// The agent takes "async" for what it says, and doesn't wait for a hook that has it.
    bool hasAsyncHooks = true;

    /// The agent waits for the hooks of a session's end, and for no longer than
    /// `HookTimeout::sessionEnd`. It warns of an entry that asks for anything else.
    bool waitsAtSessionEnd = false;

    /// The agent runs no hook that is new or changed before its person has reviewed it.
    bool reviewsHooks = false;

    /// A prompt without a text tells that a tool has given its result, and nothing of a person.
    bool hasPromptsOfItsOwn = false;

    /// Every message of the transcript counts as the agent's last words, whatever phase it is of.
    bool everyPhaseCounts = false;

    /// What launches a subagent that keeps a transcript of its own, which names the session that it
    /// works for beside its own id. Empty where there is none.
    QLatin1String spawningTool{};

    /// A subagent asks for permission as its session does, and takes an answer.
    bool subagentsAsk = false;

    /// The agent asks in its terminal only once a hook that waits has ended without an answer.
    bool asksAfterHook = false;

    /// What shows its person a plan, which is approved only by an answer that gives it back. Empty
    /// where none wants this.
    QLatin1String planTool{};

    /// Notifications of their own tell that a teammate, a server of the agent's tools or a question
    /// of the agent's waits for the person.
    bool tellsWhoElseAsks = false;

    /// The hooks of one call start together, so that the announcement of a call may come after its
    /// own request for permission.
    bool announcesWhileAsking = false;

    /// The hook of a turn's end brings the agent's last words, or what failed.
    bool tellsLastWords = false;

    /// A person who interrupts the agent while it asks ends the hook that waits, and the agent says
    /// nothing of it.
    bool interruptsByHangUp = false;

    /// The agent has a hook of its own for a turn that its person interrupts.
    bool tellsInterruptions = false;

    /// A turn that is interrupted or fails ends without a hook, or with one that doesn't say so;
    /// the transcript tells.
    bool endsTurnsInTranscript = false;

    /// Hooks run in a server that outlives the agent's windows, in the surroundings of whoever
    /// started it first.
    bool hooksRunInServer = false;

    /// The title in the transcript is that of the turn before, while a turn runs.
    bool titlesLag = false;

    friend bool operator==(const AgentContract &, const AgentContract &) = default;
};

} // namespace morvane
