#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/StoreFixture.h"

namespace morvane {
namespace {

using enum AgentKind;
using enum SessionState;

/// What agents of listed releases say late, or not at all.
class UnsaidTest : public StoreFixture {
protected:
    /// Tells a hook of the newest release that is listed. Returns the state that it leads to.
    SessionState tell(AgentKind agent, const QString &name, const QByteArray &members,
                      const std::optional<QString> &decisionID = {}) {
        const auto event = HookEvent::decode(*AgentRegistry::forms(agent).back(), name,
                                             "{\"session_id\":\"s\"," + members + "}", {});
        EXPECT_TRUE(event) << members.constData();
        HookEvent hook = event.value_or(HookEvent());
        hook.decisionID = decisionID;
        hook.process = {2, 1, 1};
        store.apply(hook);
        return session().state;
    }

    using Turn = TranscriptInfo::Turn;

    const QByteArray ofA = R"(,"agent_id":"a")";
    const QByteArray another = R"("tool_name":"Bash","tool_input":{"command":"ls"})";
    static constexpr const char *make = R"("tool_name":"Bash","tool_input":{"command":"make"})";
};

TEST_F(UnsaidTest, AnAnnouncementThatComesLateDoesNotHideItsOwnRequest) {
    // Codex says only in its request what the call is for.
    const QByteArray explained =
        R"("tool_name":"Bash","tool_input":{"command":"make","description":"Build"})";
    for (const AgentKind agent : {claude, codex}) {
        tell(agent, "UserPromptSubmit", R"("prompt":"go")");
        tell(agent, "PermissionRequest", explained, "d");
        EXPECT_EQ(tell(agent, "PreToolUse", make), needsInput);
        // Claude Code may have been answered in its terminal; Codex doesn't ask there meanwhile.
        EXPECT_EQ(tell(agent, "PreToolUse", another), agent == claude ? working : needsInput);
        tell(agent, "PermissionRequest", make, "e");
        store.decide("s", AgentDecision::allow());
        EXPECT_EQ(tell(agent, "PreToolUse", make), working);
    }
}

TEST_F(UnsaidTest, APlanIsProseAndCannotBeAllowedForGood) {
    for (const char *tool : {"ExitPlanMode", "Bash"}) {
        tell(claude, "PermissionRequest",
             QByteArray(R"("tool_input":{"plan":"1. Rest"},"tool_name":")") + tool + '"', "d");
        ASSERT_TRUE(session().pendingApproval);
        EXPECT_EQ(session().pendingApproval->choices().contains(
                      AgentDecision::allowRemembering(AgentDecision::Scope::session)),
                  tool == QLatin1String("Bash"));
        EXPECT_EQ(session().pendingApproval->input.lines.first().sign,
                  tool == QLatin1String("Bash") ? ReadableInput::Sign::plain
                                                : ReadableInput::Sign::prose);
    }
}

TEST_F(UnsaidTest, ASubagentOfCodexAsksForItsSession) {
    const QByteArray ofSubagent = QByteArray(make) + R"(,"agent_id":"a","cwd":"/elsewhere")";
    tell(codex, "UserPromptSubmit", R"("prompt":"go","cwd":"/srv")");
    tell(codex, "Stop", R"("cwd":"/srv")");
    EXPECT_EQ(tell(codex, "PermissionRequest", ofSubagent, "d"), needsInput);
    ASSERT_TRUE(session().pendingApproval);
    EXPECT_EQ(session().pendingSubagent, "a");
    EXPECT_EQ(session().cwd, "/srv");
    EXPECT_EQ(take(announced), (QStringList{"done", "needsInput"}));
    EXPECT_EQ(tell(codex, "PreToolUse", ofSubagent), needsInput);
    store.decide("s", AgentDecision::allow());
    EXPECT_EQ(resolved, QStringList{"d allow"});
    EXPECT_EQ(session().state, working);
    EXPECT_EQ(tell(codex, "SubagentStop", R"("agent_id":"a")"), done);
    EXPECT_FALSE(session().acknowledged);
    EXPECT_EQ(take(announced), QStringList{"done"});

    // The subagent has ended, so a later SubagentStop doesn't end the session's own work.
    apply(EventBuilder(Kind::needsInput).of(codex));
    EXPECT_EQ(tell(codex, "SubagentStop", R"("agent_id":"b")"), needsInput);
    tell(codex, "Stop", R"("cwd":"/srv")");
    tell(codex, "PermissionRequest", ofSubagent, "c");
    store.decide("s", AgentDecision::allow());
    tell(codex, "UserPromptSubmit", R"("prompt":"on","cwd":"/srv")");
    EXPECT_EQ(tell(codex, "SubagentStop", R"("agent_id":"a")"), working);
    tell(codex, "PermissionRequest", ofSubagent, "d");
    store.decide("s", AgentDecision::allow());
    EXPECT_EQ(tell(codex, "SubagentStop", R"("agent_id":"a")"), working);
    take(resolved);

    // The session doesn't wait for its subagent: its own turn may end meanwhile.
    tell(codex, "UserPromptSubmit", R"("prompt":"go on","cwd":"/srv")");
    tell(codex, "PermissionRequest", ofSubagent, "e");
    EXPECT_EQ(tell(codex, "PreToolUse", R"("tool_name":"Read","cwd":"/srv")"), needsInput);
    EXPECT_EQ(tell(codex, "Stop", R"("cwd":"/srv","last_assistant_message":"Over.")"), needsInput);
    EXPECT_EQ(resolved, QStringList());
    store.decide("s", AgentDecision::deny());
    EXPECT_EQ(session().state, working);
    EXPECT_EQ(tell(codex, "SubagentStop", R"("agent_id":"a")"), done);
    EXPECT_EQ(store.completedHistory().first().summary, "Over.");

    // A subagent's request may be the first event of its session.
    apply(Kind::sessionEnd);
    tell(codex, "PermissionRequest", ofSubagent, "g");
    EXPECT_EQ(session().agent, codex);
    EXPECT_TRUE(session().pendingApproval);
}

TEST_F(UnsaidTest, WhatASubagentAsksElsewhereIsNotItsSessionsOwn) {
    const QByteArray place = R"(,"agent_id":"a","cwd":"/elsewhere","transcript_path":"/other")";
    tell(claude, "UserPromptSubmit", R"("prompt":"go","cwd":"/srv","transcript_path":"/t")");
    // A request is shown even if no hook waits for an answer.
    EXPECT_EQ(tell(claude, "PermissionRequest", make + place), needsInput);
    EXPECT_EQ(tell(claude, "PreToolUse", make + place), working);
    const QByteArray asking =
        R"("tool_name":"A","tool_input":{"questions":[{"question":"Q","options":[{"label":"Y"}],)"
        R"("multiSelect":true}]})";
    EXPECT_EQ(tell(claude, "PermissionRequest", asking + place, "d"), needsInput);
    EXPECT_EQ(resolved, QStringList{"d ask"});
    EXPECT_EQ(session().cwd, "/srv");
    EXPECT_EQ(session().transcriptPath, "/t");
    EXPECT_EQ(tell(claude, "PreToolUse", make + place), working);
    // A question that can be answered here outlives its session's turn.
    const QByteArray single = QByteArray(asking).replace("true", "false");
    tell(claude, "PermissionRequest", single + place, "e");
    EXPECT_EQ(tell(claude, "Stop", R"("x":1)"), needsInput);
    EXPECT_TRUE(session().pendingQuestion);
    store.answer("s", "Q", "Y");
    EXPECT_EQ(tell(claude, "SubagentStop", R"("agent_id":"a")"), done);
    EXPECT_EQ(resolved, (QStringList{"d ask", "e answer Q=Y"}));
}

TEST_F(UnsaidTest, ASubagentThatWasAnsweredElsewhereGoesOn) {
    for (const AgentKind agent : {claude, codex}) {
        tell(agent, "UserPromptSubmit", R"("prompt":"go")");
        tell(agent, "PermissionRequest", make + ofA, "d");
        store.approvalExpired("d");
        EXPECT_EQ(tell(agent, "PreToolUse", another + R"(,"agent_id":"b")"), needsInput);
        EXPECT_EQ(tell(agent, "PreToolUse", make + ofA), working);
        // As in the session itself, another call may have run beside the one that waits.
        tell(agent, "PermissionRequest", make + ofA, "e");
        EXPECT_EQ(tell(agent, "PreToolUse", another + ofA), agent == claude ? working : needsInput);
        EXPECT_TRUE(session().pendingApproval);
        // The end of a subagent ends its request.
        tell(agent, "PermissionRequest", make + ofA, "f");
        EXPECT_EQ(take(resolved), QStringList{"e ask"});
        EXPECT_EQ(tell(agent, "SubagentStop", R"("agent_id":"b")"), needsInput);
        EXPECT_EQ(tell(agent, "SubagentStop", R"("agent_id":"a")"), working);
        EXPECT_EQ(take(resolved), QStringList{"f ask"});
        tell(agent, "Stop", R"("x":1)");
        tell(agent, "PermissionRequest", make + ofA, "g");
        store.approvalExpired("g");
        EXPECT_EQ(tell(agent, "SubagentStop", R"("agent_id":"b")"), needsInput);
        EXPECT_EQ(tell(agent, "SubagentStop", R"("agent_id":"a")"), done);
        tell(agent, "PermissionRequest", make + ofA);
        EXPECT_EQ(tell(agent, "SubagentStop", R"("agent_id":"a")"), done);
    }
}

TEST_F(UnsaidTest, OnlyAnAgentThatListsItsSubagentsSaysWhenTheyAreOver) {
    for (const AgentKind agent : {claude, codex}) {
        tell(agent, "UserPromptSubmit", R"("prompt":"go")");
        tell(agent, "PermissionRequest", make + ofA, "d");
        store.approvalExpired("d");
        EXPECT_EQ(tell(agent, "Stop", R"("x":1)"), agent == claude ? done : needsInput);
        EXPECT_EQ(tell(agent, "SubagentStop", R"("agent_id":"a")"), done);
        // If a subagent's event is a session's first, nobody knows whether a turn is running.
        for (const Kind kind : {Kind::sessionStart, Kind::sessionEnd}) {
            apply(EventBuilder(kind).of(agent));
            tell(agent, "PermissionRequest", make + ofA, "e");
            EXPECT_TRUE(session().process);
            store.decide("s", AgentDecision::allow());
            EXPECT_EQ(tell(agent, "SubagentStop", R"("agent_id":"a")"),
                      agent == claude ? working : done);
        }
    }
}

TEST_F(UnsaidTest, ASubagentThatGoesOnChangesNoEndOfItsSession) {
    const std::tuple<QString, QByteArray, SessionState> ends[] = {
        {"StopFailure", R"("x":1)", failed},
        {"Notification", R"("notification_type":"idle_prompt")", done}};
    for (const auto &[event, members, state] : ends) {
        tell(claude, "UserPromptSubmit", R"("prompt":"go")");
        tell(claude, "Stop", R"("x":1)");
        tell(claude, "PermissionRequest", make + ofA, "d");
        store.decide("s", AgentDecision::allow());
        EXPECT_EQ(tell(claude, event, members), state);
        store.acknowledge("s");
        EXPECT_EQ(tell(claude, "SubagentStop", R"("agent_id":"a")"), state);
        EXPECT_TRUE(session().acknowledged);
    }
    // The end of a background agent is no answer to the session's prompt.
    tell(claude, "Notification", R"("notification_type":"permission_prompt")");
    EXPECT_EQ(tell(claude, "Notification", R"("notification_type":"agent_completed")"), needsInput);
    EXPECT_EQ(tell(claude, "Notification", R"("notification_type":"idle_prompt")"), done);
}

TEST_F(UnsaidTest, WhoeverHasGivenWayToAnotherStillAsks) {
    const QByteArray pending = R"("background_tasks":[{"type":"subagent"}])";
    const auto askTwice = [&](const QByteArray &first) {
        tell(claude, "UserPromptSubmit", R"("prompt":"go")");
        tell(claude, "PermissionRequest", make + first, "d");
        tell(claude, "PermissionRequest", QByteArray(make) + R"(,"agent_id":"b")", "e");
        store.decide("s", AgentDecision::allow());
        EXPECT_EQ(take(resolved), (QStringList{"d ask", "e allow"}));
        EXPECT_EQ(session().state, needsInput);
        EXPECT_FALSE(session().acknowledged);
    };
    askTwice({});
    EXPECT_EQ(tell(claude, "PreToolUse", make), working);

    askTwice(ofA);
    EXPECT_EQ(tell(claude, "SubagentStop", R"("agent_id":"b")"), needsInput);
    // The agent prompts itself with what the other one has found.
    EXPECT_EQ(tell(claude, "UserPromptSubmit", R"("prompt":"<task-notification>found")"), working);
    EXPECT_EQ(tell(claude, "Stop", pending), needsInput);
    EXPECT_FALSE(session().acknowledged);
    EXPECT_EQ(tell(claude, "PreToolUse", make + ofA), working);
    EXPECT_EQ(tell(claude, "Stop", R"("x":1)"), done);

    // Without background agents nobody asks any more.
    askTwice(ofA);
    EXPECT_EQ(tell(claude, "Stop", R"("x":1)"), done);
    EXPECT_EQ(tell(claude, "Stop", pending), working);
    // Nor after a prompt by a person, who has interrupted whoever asked.
    askTwice(ofA);
    EXPECT_EQ(tell(claude, "UserPromptSubmit", R"("prompt":"rather this")"), working);
    EXPECT_EQ(tell(claude, "Stop", pending), working);
    // The session's own prompt in its terminal stays open when a subagent is answered.
    tell(claude, "Notification", R"("notification_type":"permission_prompt")");
    tell(claude, "PermissionRequest", make + ofA, "e");
    store.decide("s", AgentDecision::allow());
    EXPECT_EQ(session().state, needsInput);
    EXPECT_EQ(tell(claude, "PreToolUse", make), working);
    take(resolved);
    // When the request of one ends, the other still calls.
    askTwice(ofA);
    tell(claude, "PermissionRequest", QByteArray(make) + R"(,"agent_id":"b")", "f");
    store.approvalHungUp("f");
    EXPECT_EQ(session().state, needsInput);
    EXPECT_FALSE(session().acknowledged);
    tell(claude, "Stop", R"("x":1)");
    // A background agent that is still pending keeps the session at work.
    tell(claude, "PermissionRequest", make + ofA, "f");
    EXPECT_EQ(tell(claude, "Stop", pending), needsInput);
    store.decide("s", AgentDecision::allow());
    EXPECT_EQ(tell(claude, "SubagentStop", R"("agent_id":"a")"), working);
}

TEST_F(UnsaidTest, TheLastWordsAreThoseThatTheHookBrings) {
    const auto finish = [this](const QString &event, const QByteArray &members) {
        tell(claude, event, members + R"(,"transcript_path":"/t")");
        finishRead("of the turn before");
        const auto summary = session().summary;
        EXPECT_EQ(summary, store.completedHistory().first().summary);
        tell(claude, "UserPromptSubmit", R"("prompt":"go on")");
        return summary;
    };
    EXPECT_EQ(finish("Stop", R"("last_assistant_message":"Done.")"), "Done.");
    EXPECT_EQ(finish("Stop", R"("x":1)"), "of the turn before");
    EXPECT_EQ(finish("StopFailure", R"("error":"rate_limit","error_details":"429 Too Many")"),
              "429 Too Many");
    EXPECT_EQ(finish("StopFailure", R"("x":1)"), std::nullopt);
}

TEST_F(UnsaidTest, AnInterruptedRequestLeavesNobodyCalling) {
    const auto ask = [this] {
        tell(claude, "PermissionRequest", make, "d");
        store.approvalHungUp("d");
        EXPECT_FALSE(session().pendingApproval);
        EXPECT_TRUE(session().acknowledged);
        EXPECT_EQ(session().state, needsInput);
    };
    ask();
    scheduler.advance(Seconds(2.1));
    EXPECT_EQ(session().state, idle);
    // Somebody has answered in the terminal, and the agent goes on.
    ask();
    scheduler.advance(Seconds(0.5));
    tell(claude, "PreToolUse", make);
    scheduler.advance(Seconds(5));
    EXPECT_EQ(session().state, working);
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(UnsaidTest, TheEndOfASubagentsRequestIsNoneOfItsSessionsTurn) {
    tell(claude, "UserPromptSubmit", R"("prompt":"go")");
    tell(claude, "PermissionRequest", make + ofA, "d");
    store.approvalHungUp("d");
    EXPECT_EQ(session().state, working);
    EXPECT_TRUE(session().acknowledged);
    scheduler.advance(Seconds(5));
    EXPECT_EQ(session().state, working);
    tell(claude, "PermissionRequest", make + ofA, "e");
    tell(claude, "Stop", R"("last_assistant_message":"Over.")");
    take(announced);
    scheduler.advance(Seconds(5));
    store.approvalHungUp("e");
    EXPECT_EQ(session().state, done);
    EXPECT_EQ(session().stateChangedAt, scheduler.now());
    EXPECT_EQ(announced, QStringList{"done"});
    EXPECT_EQ(store.completedHistory().first().summary, "Over.");
}

TEST_F(UnsaidTest, ACompactionIsNoStart) {
    const char *compaction = R"("source":"compact")";
    for (const AgentKind agent : {claude, codex, qwen}) {
        tell(agent, "UserPromptSubmit", R"("prompt":"go")");
        EXPECT_EQ(tell(agent, "SessionStart", compaction), working);
        tell(agent, "PermissionRequest", make, "d");
        EXPECT_EQ(tell(agent, "SessionStart", compaction), needsInput);
        EXPECT_FALSE(session().acknowledged);
        tell(agent, "Stop", R"("x":1)");
        EXPECT_EQ(tell(agent, "SessionStart", compaction), idle);
        tell(agent, "UserPromptSubmit", R"("prompt":"go")");
        EXPECT_EQ(tell(agent, "SessionStart", R"("source":"resume")"), idle);
    }
}

TEST_F(UnsaidTest, CodexSaysThatItsTurnWasInterrupted) {
    tell(codex, "UserPromptSubmit", R"("prompt":"go")");
    tell(codex, "PreToolUse", make);
    EXPECT_EQ(tell(codex, "Interrupt", R"("turn_id":"t")"), idle);
    // Its waiting hook is ended before or after the Interrupt event.
    tell(codex, "PermissionRequest", make, "d");
    tell(codex, "Interrupt", R"("turn_id":"t")");
    store.approvalHungUp("d");
    scheduler.advance(Seconds(2.1));
    EXPECT_EQ(session().state, idle);
    EXPECT_FALSE(session().pendingApproval);
    // A subagent that asks goes on.
    tell(codex, "PermissionRequest", make + ofA, "e");
    EXPECT_EQ(tell(codex, "Interrupt", R"("turn_id":"t")"), needsInput);
    store.decide("s", AgentDecision::allow());
    EXPECT_EQ(tell(codex, "SubagentStop", R"("agent_id":"a")"), done);
    // Also when the terminal asks.
    tell(codex, "UserPromptSubmit", R"("prompt":"go")");
    tell(codex, "PermissionRequest", make + ofA, "f");
    store.approvalExpired("f");
    EXPECT_EQ(tell(codex, "Interrupt", R"("turn_id":"t")"), needsInput);
    EXPECT_EQ(tell(codex, "SubagentStop", R"("agent_id":"a")"), done);
}

TEST_F(UnsaidTest, ATurnThatEndsWithoutAHookIsFoundInTheTranscript) {
    const std::pair<Turn, SessionState> cases[] = {{Turn::running, working},
                                                   {Turn::ended, working},
                                                   {Turn::interrupted, idle},
                                                   {Turn::failed, failed}};
    for (const auto &[turn, state] : cases) {
        tell(codex, "UserPromptSubmit", R"("prompt":"go","transcript_path":"/t")");
        scheduler.advance(Seconds(10));
        finishRead({nameOf(state), "of the turn before", {}, {}, {}, turn, "Refused."});
        EXPECT_EQ(session().state, state);
        EXPECT_EQ(session().model, nameOf(state));
        EXPECT_EQ(session().summary == "Refused.", state == failed);
        if (state == failed) {
            finishRead(); // of a turn that has ended
        }
        scheduler.advance(Seconds(10));
        EXPECT_TRUE(running.empty()) << "nothing has been written";
    }
    EXPECT_EQ(announced, QStringList{"failed"});

    // The end of the turn ends its prompt in the terminal.
    tell(claude, "Notification",
         R"("notification_type":"permission_prompt","transcript_path":"/t")");
    scheduler.advance(Seconds(10));
    finishRead({{}, {}, {}, {}, {}, Turn::interrupted});
    EXPECT_EQ(session().state, idle);
    EXPECT_FALSE(session().pendingExternalResponse);

    // An end that was written before the prompt was of an older turn.
    for (const auto &[before, state] : {std::pair(Seconds(2.1), working), {Seconds(1.9), idle}}) {
        tell(claude, "UserPromptSubmit", R"("prompt":"go")");
        scheduler.advance(Seconds(1));
        finishRead({{}, {}, {}, {}, {}, Turn::interrupted, {}, session().atWorkSince - before});
        EXPECT_EQ(session().state, state);
    }
    // So was one that was written before the idle session began to wait for a teammate.
    const Date interrupted = scheduler.now();
    scheduler.advance(Seconds(3));
    tell(claude, "Notification", R"("notification_type":"worker_permission_prompt")");
    scheduler.advance(Seconds(2));
    finishRead({{}, {}, {}, {}, {}, Turn::interrupted, {}, interrupted});
    EXPECT_EQ(session().state, needsInput);
    // But the clock may have been set back since.
    tell(claude, "UserPromptSubmit", R"("prompt":"go")");
    scheduler.setClock(Seconds(-3600));
    scheduler.advance(Seconds(1));
    finishRead({{}, {}, {}, {}, {}, Turn::interrupted, {}, scheduler.now()});
    EXPECT_EQ(session().state, idle);

    // No transcript is read while the agent asks, nor for one whose hooks tell every end.
    tell(codex, "PermissionRequest", make, "d");
    scheduler.advance(Seconds(120));
    EXPECT_TRUE(running.empty());
    store.decide("s", AgentDecision::allow());
    scheduler.advance(Seconds(10));
    finishRead();
    apply(EventBuilder(Kind::promptSubmit).with(&HookEvent::transcriptPath, "/t"));
    scheduler.advance(Seconds(120));
    EXPECT_TRUE(running.empty());
}

TEST_F(UnsaidTest, AnInterruptionEndsWhatTheTurnWaitsForAndNoTurnThatIsOver) {
    tell(claude, "Stop", R"("transcript_path":"/t","background_tasks":[{"type":"subagent"}])");
    EXPECT_EQ(session().pendingAgents, 1);
    scheduler.advance(Seconds(1));
    finishRead({{}, {}, {}, {}, {}, Turn::interrupted});
    EXPECT_EQ(session().state, idle);
    EXPECT_EQ(session().pendingAgents, 0);
    Session over;
    over.state = done;
    EXPECT_EQ(SessionTransition::turnGone(over, SessionTransition::TurnEnd::interrupted, {}).write,
              SessionTransition::Write::nothing);
}

TEST_F(UnsaidTest, ATurnWhoseAgentWaitsIsLookedAtEverLessOften) {
    tell(claude, "Notification",
         R"("notification_type":"permission_prompt","transcript_path":"/t")");
    scheduler.advance(Seconds(10));
    finishRead();
    EXPECT_EQ(scheduler.timersDueIn(Seconds(1)), 1u);
    scheduler.setClock(Seconds(9));
    scheduler.advance(Seconds(1));
    EXPECT_EQ(scheduler.timersDueIn(Seconds(2)), 1u);
    scheduler.setClock(Seconds(3600));
    scheduler.advance(Seconds(2));
    EXPECT_EQ(scheduler.timersDueIn(Seconds(15)), 1u);
    tell(claude, "PreToolUse", make);
    scheduler.advance(Seconds(600));
    EXPECT_EQ(scheduler.timersDueIn(Seconds(1)), 1u);
}

TEST_F(UnsaidTest, AnEndThatWasAFailureIsHeardOnce) {
    for (const auto &[turn, state] : {std::pair(Turn::interrupted, done), {Turn::failed, failed}}) {
        tell(gemini, "BeforeAgent", R"("prompt":"go")");
        EXPECT_EQ(tell(gemini, "AfterAgent",
                       R"("prompt_response":"[no response text]","transcript_path":"/t")"),
                  done);
        finishRead({{}, {}, {}, {}, {}, turn, "API Error: 400"});
        EXPECT_EQ(session().state, state);
    }
    EXPECT_TRUE(store.completedHistory().first().failed);
    EXPECT_EQ(store.completedHistory().first().summary, "API Error: 400");
    EXPECT_EQ(announced, (QStringList{"done", "done"}));
}

} // namespace
} // namespace morvane
