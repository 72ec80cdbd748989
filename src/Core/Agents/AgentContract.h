#pragma once

#include <QLatin1String>

namespace morvane {

/// How a release of an agent differs from the contract that was written down first. The defaults
/// are that first contract, which holds for every release that isn't known to differ. A plain
/// value, which never changes in its adapter.
struct AgentContract {
    /// The form of a decision that the agent is to remember.
    enum class Remembering {
        oneRule,    ///< an object of rule, action and duration
        ruleUpdate, ///< a list of changes to the permission rules
    };

    /// The unit of the timeout in a hook's entry.
    enum class TimeUnit { seconds, milliseconds };

    Remembering remembering = Remembering::oneRule;

    TimeUnit hookTimeUnit = TimeUnit::seconds;

    /// The agent understands "async", and doesn't wait for a hook that has it.
    bool hasAsyncHooks = true;

    /// The agent waits for the hooks of a session's end, at most for `HookTimeout::sessionEnd`. It
    /// warns about an entry that asks for anything else.
    bool waitsAtSessionEnd = false;

    /// The agent runs no hook that is new or changed before its person has reviewed it.
    bool reviewsHooks = false;

    /// A prompt without text means that a tool has returned its result, not that a person wrote.
    bool hasPromptsOfItsOwn = false;

    /// A message of any phase in the transcript may be the agent's last words.
    bool everyPhaseCounts = false;

    /// The tool that launches a subagent with a transcript of its own, which names both the
    /// subagent and the session that it works for. Empty where there is none.
    QLatin1String spawningTool{};

    /// A subagent asks for permission as its session does, and takes an answer.
    bool subagentsAsk = false;

    /// The agent asks in its terminal only once a hook that waits has ended without an answer.
    bool asksAfterHook = false;

    /// The tool that shows the person a plan, which only an answer that gives it back approves.
    /// Empty where there is none.
    QLatin1String planTool{};

    /// Separate notifications tell that a teammate, a server of the agent's tools or a question of
    /// the agent's waits for the person.
    bool tellsWhoElseAsks = false;

    /// The hooks of one tool call start together, so the announcement of the call may arrive after
    /// its request for permission.
    bool announcesWhileAsking = false;

    /// The hook of a turn's end brings the agent's last words, or what failed.
    bool tellsLastWords = false;

    /// When a person interrupts the agent while it asks, the waiting hook ends, and no event tells
    /// of it.
    bool interruptsByHangUp = false;

    /// The agent has a hook of its own for a turn that its person interrupts.
    bool tellsInterruptions = false;

    /// An interrupted or failed turn ends without a hook, or with one that doesn't say so; only the
    /// transcript does.
    bool endsTurnsInTranscript = false;

    /// Hooks run in a server process that outlives the agent's windows, with the environment of
    /// whoever started it first.
    bool hooksRunInServer = false;

    /// While a turn runs, the title in the transcript is still that of the previous turn.
    bool titlesLag = false;

    friend bool operator==(const AgentContract &, const AgentContract &) = default;
};

} // namespace morvane
