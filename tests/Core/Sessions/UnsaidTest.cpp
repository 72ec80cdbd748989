#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/StoreFixture.h"

namespace morvane {
namespace {

/// What agents of listed releases say late, or not at all.
class UnsaidTest : public StoreFixture {
protected:
    /// A hook of the newest release that is listed.
    HookEvent hook(AgentKind agent, const QString &name, const QByteArray &members,
                   const QString &decisionID = {}) {
        const auto event = HookEvent::decode(*AgentRegistry::forms(agent).back(), name,
                                             "{\"session_id\":\"s\"," + members + "}", {});
        EXPECT_TRUE(event) << members.constData();
        HookEvent result = event.value_or(HookEvent());
        if (!decisionID.isEmpty()) {
            result.decisionID = decisionID;
        }
        return result;
    }
    void tell(AgentKind agent, const QString &name, const QByteArray &members,
              const QString &decisionID = {}) {
        store.apply(hook(agent, name, members, decisionID));
    }

    static constexpr const char *make = R"("tool_name":"Bash","tool_input":{"command":"make"})";
};

TEST_F(UnsaidTest, AnAnnouncementThatComesLateDoesNotHideItsOwnRequest) {
    // Codex says only in its request what the call is for.
    const QByteArray explained =
        R"("tool_name":"Bash","tool_input":{"command":"make","description":"Build"})";
    for (const AgentKind agent : {AgentKind::claude, AgentKind::codex}) {
        tell(agent, "UserPromptSubmit", R"("prompt":"go")");
        tell(agent, "PermissionRequest", explained, "d");
        tell(agent, "PreToolUse", make);
        EXPECT_EQ(session().state, SessionState::needsInput);
        EXPECT_EQ(session().currentTool, "Bash");
        tell(agent, "PreToolUse", R"("tool_name":"Bash","tool_input":{"command":"ls"})");
        EXPECT_EQ(session().state, SessionState::working);
        tell(agent, "PermissionRequest", make, "e");
        store.decide("s", AgentDecision::allow());
        tell(agent, "PreToolUse", make);
        EXPECT_EQ(session().state, SessionState::working);
    }
}

TEST_F(UnsaidTest, ASubagentOfCodexAsksForItsSession) {
    const QByteArray ofSubagent = QByteArray(make) + R"(,"agent_id":"a","cwd":"/elsewhere")";
    tell(AgentKind::codex, "UserPromptSubmit", R"("prompt":"go","cwd":"/srv")");
    tell(AgentKind::codex, "Stop", R"("cwd":"/srv")");
    tell(AgentKind::codex, "PermissionRequest", ofSubagent, "d");
    ASSERT_TRUE(session().pendingApproval);
    EXPECT_TRUE(session().pendingApproval->ofSubagent);
    EXPECT_EQ(session().state, SessionState::needsInput);
    EXPECT_EQ(session().cwd, "/srv");
    EXPECT_EQ(take(announced), (QStringList{"done", "needsInput"}));
    tell(AgentKind::codex, "PreToolUse", ofSubagent);
    EXPECT_EQ(session().state, SessionState::needsInput);
    store.decide("s", AgentDecision::allow());
    EXPECT_EQ(resolved, QStringList{"d allow"});
    EXPECT_EQ(session().state, SessionState::working);
    tell(AgentKind::codex, "SubagentStop", R"("agent_id":"a")");
    EXPECT_EQ(session().state, SessionState::done);
    EXPECT_EQ(take(announced), QStringList{"done"});

    // It has had its say: what ends later is no end of the session's own work.
    apply(EventBuilder(Kind::needsInput).of(AgentKind::codex));
    tell(AgentKind::codex, "SubagentStop", R"("agent_id":"b")");
    EXPECT_EQ(session().state, SessionState::needsInput);
    tell(AgentKind::codex, "Stop", R"("cwd":"/srv")");
    tell(AgentKind::codex, "PermissionRequest", ofSubagent, "c");
    store.decide("s", AgentDecision::allow());
    tell(AgentKind::codex, "UserPromptSubmit", R"("prompt":"on","cwd":"/srv")");
    tell(AgentKind::codex, "SubagentStop", R"("agent_id":"a")");
    EXPECT_EQ(session().state, SessionState::working);
    take(announced);
    take(resolved);

    // The session doesn't wait for it, and its own turn may end meanwhile.
    tell(AgentKind::codex, "UserPromptSubmit", R"("prompt":"go on","cwd":"/srv")");
    tell(AgentKind::codex, "PermissionRequest", ofSubagent, "e");
    tell(AgentKind::codex, "Stop", R"("cwd":"/srv","last_assistant_message":"Over.")");
    EXPECT_EQ(session().state, SessionState::needsInput);
    EXPECT_EQ(resolved, QStringList());
    store.decide("s", AgentDecision::deny());
    EXPECT_EQ(session().state, SessionState::working);
    tell(AgentKind::codex, "SubagentStop", R"("agent_id":"a")");
    EXPECT_EQ(session().state, SessionState::done);
    EXPECT_EQ(store.completedHistory().first().summary, "Over.");

    // Of releases that aren't known it is answered by the agent's own prompt.
    apply(EventBuilder::parked("f").of(AgentKind::codex).with(&HookEvent::agentID, "a"));
    EXPECT_EQ(resolved.last(), "f ask");
}

TEST_F(UnsaidTest, ASubagentOfCodexMayBeTheFirstToSpeak) {
    tell(AgentKind::codex, "PermissionRequest", QByteArray(make) + R"(,"agent_id":"a")", "d");
    EXPECT_EQ(session().agent, AgentKind::codex);
    EXPECT_EQ(session().lastEventAt, scheduler.now());
    EXPECT_EQ(session().stateChangedAt, scheduler.now());
    EXPECT_TRUE(session().pendingApproval);
}

TEST_F(UnsaidTest, TheLastWordsAreThoseThatTheHookBrings) {
    const auto finish = [this](const QString &event, const QByteArray &members) {
        tell(AgentKind::claude, event, members + R"(,"transcript_path":"/t")");
        for (const auto &use : std::exchange(running, {})) {
            use({{}, "of the turn before", {}, {}, {}});
        }
        EXPECT_EQ(session().summary, store.completedHistory().first().summary);
        const auto summary = session().summary;
        tell(AgentKind::claude, "UserPromptSubmit", R"("prompt":"go on")");
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
        tell(AgentKind::claude, "PermissionRequest", make, "d");
        store.approvalHungUp("d");
        EXPECT_FALSE(session().pendingApproval);
        EXPECT_TRUE(session().acknowledged);
        EXPECT_EQ(session().state, SessionState::needsInput);
    };
    ask();
    scheduler.advance(Seconds(2.1));
    EXPECT_EQ(session().state, SessionState::idle);
    // Somebody has answered in the terminal, and the agent goes on.
    ask();
    scheduler.advance(Seconds(0.5));
    tell(AgentKind::claude, "PreToolUse", make);
    scheduler.advance(Seconds(5));
    EXPECT_EQ(session().state, SessionState::working);
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(UnsaidTest, CodexSaysThatItsTurnWasInterrupted) {
    tell(AgentKind::codex, "UserPromptSubmit", R"("prompt":"go")");
    tell(AgentKind::codex, "PreToolUse", make);
    tell(AgentKind::codex, "Interrupt", R"("turn_id":"t")");
    EXPECT_EQ(session().state, SessionState::idle);
    // Its hook that waits is ended before or after that.
    tell(AgentKind::codex, "PermissionRequest", make, "d");
    tell(AgentKind::codex, "Interrupt", R"("turn_id":"t")");
    store.approvalHungUp("d");
    scheduler.advance(Seconds(2.1));
    EXPECT_EQ(session().state, SessionState::idle);
    EXPECT_FALSE(session().pendingApproval);
    EXPECT_FALSE(HookEvent::decode(AgentKind::codex, "Interrupt", R"({"session_id":"s"})", {}));
}

TEST_F(UnsaidTest, ATurnThatEndsWithoutAHookIsFoundInTheTranscript) {
    using Turn = TranscriptInfo::Turn;
    const std::pair<Turn, SessionState> cases[] = {{Turn::running, SessionState::working},
                                                   {Turn::ended, SessionState::working},
                                                   {Turn::interrupted, SessionState::idle},
                                                   {Turn::failed, SessionState::failed}};
    for (const auto &[turn, state] : cases) {
        tell(AgentKind::codex, "UserPromptSubmit", R"("prompt":"go","transcript_path":"/t")");
        scheduler.advance(Seconds(10));
        ASSERT_FALSE(running.empty());
        TranscriptInfo info;
        info.lastAssistantText = "of the turn before";
        info.turn = turn;
        info.failure = "Refused.";
        for (const auto &use : std::exchange(running, {})) {
            use(info);
        }
        EXPECT_EQ(session().state, state);
        EXPECT_EQ(session().summary == "Refused.", state == SessionState::failed);
        for (const auto &use : std::exchange(running, {})) {
            use({});
        }
        scheduler.advance(Seconds(10));
        EXPECT_TRUE(running.empty()) << "nothing has been written";
    }
    EXPECT_EQ(announced, QStringList{"failed"});
    // Once none runs, nothing is looked at.
    scheduler.advance(Seconds(120));
    EXPECT_TRUE(running.empty());

    // What it asks in its terminal goes with the turn.
    tell(AgentKind::claude, "Notification",
         R"("notification_type":"permission_prompt","transcript_path":"/t")");
    scheduler.advance(Seconds(10));
    for (const auto &use : std::exchange(running, {})) {
        TranscriptInfo info;
        info.turn = Turn::interrupted;
        use(info);
    }
    EXPECT_EQ(session().state, SessionState::idle);
    EXPECT_FALSE(session().pendingExternalResponse);

    // Not while it asks, nor for an agent that would say so.
    tell(AgentKind::codex, "PermissionRequest", make, "d");
    scheduler.advance(Seconds(120));
    EXPECT_TRUE(running.empty());
    store.decide("s", AgentDecision::allow());
    scheduler.advance(Seconds(10));
    ASSERT_FALSE(running.empty());
    for (const auto &use : std::exchange(running, {})) {
        use({});
    }
    apply(EventBuilder(Kind::promptSubmit).with(&HookEvent::transcriptPath, "/t"));
    scheduler.advance(Seconds(120));
    EXPECT_TRUE(running.empty());
}

TEST_F(UnsaidTest, AnEndThatWasAFailureIsHeardOnce) {
    tell(AgentKind::gemini, "AfterAgent",
         R"("prompt_response":"[no response text]","transcript_path":"/t")");
    EXPECT_EQ(session().state, SessionState::done);
    TranscriptInfo info;
    info.turn = TranscriptInfo::Turn::failed;
    info.failure = "API Error: 400";
    ASSERT_FALSE(running.empty());
    for (const auto &use : std::exchange(running, {})) {
        use(info);
    }
    EXPECT_EQ(session().state, SessionState::failed);
    EXPECT_TRUE(store.completedHistory().first().failed);
    EXPECT_EQ(store.completedHistory().first().summary, "API Error: 400");
    EXPECT_EQ(announced, QStringList{"done"});
}

TEST_F(UnsaidTest, AnAgentThatIsGoneTakesItsSessionAlong) {
    apply(EventBuilder::parked("d"));
    store.agentEnded("s");
    EXPECT_TRUE(store.sessions().isEmpty());
    EXPECT_EQ(resolved, QStringList{"d ask"});
}

} // namespace
} // namespace morvane
