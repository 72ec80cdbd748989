#include "Core/SessionStore.h"

#include "Core/Defaults.h"
#include "Core/MorvaneSettings.h"
#include "Support/EventBuilder.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <utility>
#include <vector>

namespace morvane {
namespace {

using Kind = CanonicalEvent;
using Scope = AgentDecision::Scope;

QString nameOf(SessionState state) {
    constexpr std::array names{"working", "needsInput", "done", "failed", "idle"};
    return names[static_cast<std::size_t>(state)];
}

QString nameOf(const AgentDecision &decision) {
    constexpr std::array names{"remember", "answer", "allow", "deny", "ask"};
    QString result = names[static_cast<std::size_t>(decision.kind)];
    for (auto entry = decision.answers.begin(); entry != decision.answers.end(); ++entry) {
        result += " " + entry.key() + "=" + entry.value();
    }
    return result;
}

/// A store in surroundings of the test's making, and a record of all that it tells.
class StoreTest : public testing::Test {
protected:
    void SetUp() override {
        store.resolveDecision = [this](const QString &id, const AgentDecision &decision) {
            resolved.append(id + " " + nameOf(decision));
            stateAtRelease = store.sessions().value("s");
        };
        QObject::connect(&store, &SessionStore::sessionsChanged, &store, [this] { ++published; });
        QObject::connect(&store, &SessionStore::stateChanges, &store,
                         [this](SessionState state) { announced.append(nameOf(state)); });
        store.readTranscript = [this](AgentKind agent, const QString &path,
                                      SessionStore::UseTranscript use) {
            reads.append(displayName(agent) + " " + path);
            running.push_back(std::move(use));
        };
    }

    /// The session, which has to be there.
    Session session(const QString &id = "s") const {
        EXPECT_TRUE(store.sessions().contains(id));
        return store.sessions().value(id);
    }

    void apply(const EventBuilder &event) { store.apply(event); }
    void apply(Kind kind) { store.apply(EventBuilder(kind)); }

    void parkApproval(const QString &decisionID) { apply(EventBuilder::parked(decisionID)); }
    void parkQuestions(const QString &decisionID, const QStringList &texts) {
        apply(EventBuilder::parked(decisionID).asking(texts));
    }

    /// Brings a session into a state by way of one event, unless it is to be none.
    void bringInto(std::optional<SessionState> state, const QString &id) {
        constexpr std::array ways{Kind::promptSubmit, Kind::needsInput, Kind::turnEnd,
                                  Kind::turnFailed, Kind::sessionStart};
        if (state) {
            apply(EventBuilder(ways[static_cast<std::size_t>(*state)]).in(id));
            EXPECT_EQ(session(id).state, *state);
        }
    }

    /// Lets the oldest read that still runs end.
    void finishRead(const TranscriptInfo &info = {}) {
        ASSERT_FALSE(running.empty());
        const auto use = running.front();
        running.erase(running.begin());
        use(info);
    }

    static EventBuilder withTranscript(Kind kind) {
        return EventBuilder(kind).with(&HookEvent::transcriptPath, "/t.jsonl");
    }

    /// What has been recorded since the last time.
    template <typename Record>
    static Record take(Record &record) {
        return std::exchange(record, Record());
    }

    TemporaryHome home;
    Defaults defaults{home.path("defaults"), "test.domain"};
    MorvaneSettings settings{defaults};
    ManualScheduler scheduler;
    SessionStore store{
        settings,
        {[](const QString &cwd) {
             return cwd.isEmpty() ? std::nullopt : std::optional("branch of " + cwd);
         },
         [this](const QString &cwd) { return settings.name(cwd); },
         [](const std::optional<QString> &bundle, const std::optional<QString> &program) {
             return std::optional(bundle.value_or("-") + "/" + program.value_or("-"));
         }},
        scheduler};

    QStringList resolved, announced, reads;
    std::vector<SessionStore::UseTranscript> running;
    Session stateAtRelease;
    int published = 0;
};

/// What an event does after no session, and after one in each state.
struct TransitionRow {
    const char *name;
    EventBuilder event;
    /// After none, working, needsInput, done, failed and idle. A dash: nothing happens at all.
    std::array<const char *, 6> after;
};

std::vector<TransitionRow> transitions() {
    const auto always = [](const char *state) {
        return std::array{state, state, state, state, state, state};
    };
    const EventBuilder turnEnd(Kind::turnEnd);
    const auto agents = turnEnd.background({"shell", "workflow"});
    const EventBuilder stop(Kind::subagentStop);
    const EventBuilder end(Kind::sessionEnd);
    return {{"start", EventBuilder(Kind::sessionStart), always("idle")},
            {"prompt", EventBuilder(Kind::promptSubmit), always("working")},
            {"tool", EventBuilder(Kind::toolUse), always("working")},
            {"notice", EventBuilder(Kind::needsInput), always("needsInput")},
            {"idle", EventBuilder(Kind::idle), {"idle", "done", "done", "-", "-", "-"}},
            {"turnEnd", turnEnd, always("done")},
            {"turnEnd with a shell", turnEnd.background({"shell"}), always("done")},
            {"turnEnd with an agent", agents, always("working")},
            {"turnFailed", EventBuilder(Kind::turnFailed), always("failed")},
            {"subagentStop", stop, {"-", "working", "needsInput", "done", "failed", "idle"}},
            {"sessionEnd", end, {"-", "none", "none", "none", "none", "none"}},
            {"permission", EventBuilder(Kind::permissionRequest), always("needsInput")},
            {"parked", EventBuilder::parked("d"), always("needsInput")}};
}

TEST_F(StoreTest, MovesThroughItsStates) {
    using enum SessionState;
    const std::optional<SessionState> starts[] = {{}, working, needsInput, done, failed, idle};
    const auto stateOf = [this](const QString &id) {
        return store.sessions().contains(id) ? nameOf(session(id).state) : "none";
    };
    for (const TransitionRow &row : transitions()) {
        for (std::size_t column = 0; column < std::size(starts); ++column) {
            const QString id = QString(row.name) + QString::number(column);
            SCOPED_TRACE(id.toStdString());
            bringInto(starts[column], id);
            const QString before = stateOf(id);
            const Session untouched = store.sessions().value(id);
            take(announced);
            take(published);
            scheduler.advance(Seconds(1));
            apply(row.event.in(id));

            const QString after = stateOf(id);
            if (row.after[column] == QString("-")) {
                EXPECT_EQ(after, before);
                EXPECT_TRUE(store.sessions().value(id) == untouched);
                EXPECT_EQ(published, 0);
                continue;
            }
            EXPECT_EQ(after, row.after[column]);
            EXPECT_GT(published, 0);
            const bool calls =
                after != before && QStringList{"needsInput", "done", "failed"}.contains(after);
            EXPECT_EQ(announced, calls ? QStringList{after} : QStringList());
            if (after != "none") {
                EXPECT_EQ(session(id).lastEventAt, scheduler.now());
                const bool restarts = after != before || row.name == QString("prompt");
                EXPECT_EQ(session(id).stateChangedAt == scheduler.now(), restarts);
            }
        }
    }
}

TEST_F(StoreTest, LearnsFromWhatAnEventTellsAndKeepsTheRest) {
    settings.setName("Mine", "/a");
    const PaneLocator tmux{"%1", "server", {}, {}, {}, {}};
    apply(EventBuilder(Kind::sessionStart)
              .with(&HookEvent::cwd, "/a")
              .with(&HookEvent::hostBundleID, "bundle")
              .with(&HookEvent::ttyName, "/dev/pts/1")
              .with(&HookEvent::pane, tmux)
              .with(&HookEvent::transcriptPath, "/t.jsonl"));
    Session expected;
    expected.id = "s";
    expected.cwd = "/a";
    expected.hostBundleID = "bundle";
    expected.ttyName = "/dev/pts/1";
    expected.pane = tmux;
    expected.hostAppName = "bundle/-";
    expected.startedAt = expected.lastEventAt = expected.stateChangedAt = scheduler.now();
    expected.gitBranch = "branch of /a";
    expected.customName = "Mine";
    expected.transcriptPath = "/t.jsonl";
    EXPECT_TRUE(session() == expected);

    settings.setName("Later", "/a");
    apply(EventBuilder(Kind::sessionStart)
              .with(&HookEvent::cwd, "")
              .with(&HookEvent::pane, PaneLocator{{}, "other", {}, {}, {}, {}}));
    apply(EventBuilder(Kind::sessionStart).with(&HookEvent::cwd, "/a"));
    EXPECT_TRUE(session() == expected);

    apply(EventBuilder(Kind::sessionStart)
              .of(AgentKind::codex)
              .with(&HookEvent::cwd, "/b")
              .with(&HookEvent::termProgram, "kitty")
              .with(&HookEvent::pane, PaneLocator{{}, {}, {}, {}, "z", {}}));
    expected.agent = AgentKind::codex;
    expected.cwd = "/b";
    expected.gitBranch = "branch of /b";
    expected.customName.reset();
    expected.termProgram = "kitty";
    expected.hostAppName = "bundle/kitty";
    expected.pane = {{}, {}, {}, {}, "z", {}};
    EXPECT_TRUE(session() == expected);
}

TEST_F(StoreTest, FollowsATurnFromPromptToEnd) {
    apply(EventBuilder(Kind::promptSubmit).with(&HookEvent::prompt, "Do it"));
    apply(EventBuilder(Kind::toolUse).tool("Task").with(&HookEvent::taskDescription, "Look"));
    for (const char *name : {"Agent", "subagent", "Subagent", "agent"}) {
        apply(EventBuilder(Kind::toolUse).tool(name));
    }
    EXPECT_EQ(session().currentTool, "agent");
    const auto tasks = [this] {
        QStringList result;
        for (const Subagent &subagent : session().subagents) {
            result.append(subagent.task + (subagent.done ? " done" : ""));
        }
        return result;
    };
    EXPECT_EQ(tasks(), (QStringList{"Look", "subagent", "subagent", "subagent"}));
    EXPECT_NE(session().subagents[1].id, session().subagents[2].id);

    apply(EventBuilder(Kind::subagentStop)
              .with(&HookEvent::agentID, "a")
              .with(&HookEvent::cwd, "/of/the/subagent"));
    EXPECT_EQ(tasks(), (QStringList{"Look done", "subagent", "subagent", "subagent"}));
    EXPECT_EQ(session().cwd, "");
    apply(Kind::toolUse);
    EXPECT_EQ(session().currentTool, std::nullopt);

    apply(EventBuilder(Kind::turnEnd).background({"subagent", "workflow"}));
    EXPECT_EQ(session().pendingAgents, 2);
    EXPECT_TRUE(session().acknowledged);
    EXPECT_EQ(tasks(), (QStringList{"Look done", "subagent", "subagent", "subagent"}));
    const Session pending = session();
    take(published);
    scheduler.advance(Seconds(1));
    apply(Kind::idle);
    EXPECT_TRUE(session() == pending);
    EXPECT_EQ(published, 0);
    EXPECT_EQ(announced, QStringList());

    apply(Kind::turnEnd);
    EXPECT_FALSE(session().acknowledged);
    EXPECT_EQ(tasks().filter("done").size(), 4);
    EXPECT_EQ(announced, QStringList{"done"});
    EXPECT_EQ(store.completedHistory().size(), 1);
    EXPECT_EQ(store.completedHistory().first().id, "s");
    EXPECT_EQ(store.completedHistory().first().name, "session");
    EXPECT_EQ(store.completedHistory().first().lastPrompt, "Do it");

    apply(Kind::promptSubmit);
    EXPECT_EQ(tasks(), QStringList());
    EXPECT_TRUE(session().acknowledged);
    EXPECT_EQ(session().lastPrompt, "Do it");
}

TEST_F(StoreTest, LeavesASessionAloneWhenItsSubagentSpeaks) {
    parkApproval("d1");
    const Session before = session();
    take(published);
    take(announced);
    scheduler.advance(Seconds(1));
    for (const Kind kind : {Kind::sessionStart, Kind::promptSubmit, Kind::toolUse, Kind::needsInput,
                            Kind::idle, Kind::turnEnd, Kind::turnFailed, Kind::sessionEnd}) {
        apply(EventBuilder(kind).with(&HookEvent::agentID, "a"));
        apply(EventBuilder(kind).in("other").with(&HookEvent::agentID, "a"));
    }
    apply(EventBuilder::parked("d2").with(&HookEvent::agentID, "a"));
    EXPECT_TRUE(session() == before);
    EXPECT_EQ(store.sessions().size(), 1);
    EXPECT_EQ(resolved, QStringList{"d2 ask"});
    EXPECT_EQ(published, 0);
    EXPECT_EQ(announced, QStringList());
}

TEST_F(StoreTest, ShowsAPermissionRequestThatWaits) {
    apply(EventBuilder::parked("d1").with(&HookEvent::toolDetail, "make"));
    const Date limit = scheduler.now() + Seconds(60);
    EXPECT_EQ(session().pendingApproval, (PendingApproval{"d1", "Bash", "make", limit, true}));
    EXPECT_FALSE(session().acknowledged);

    // The agent's own notice of the prompt doesn't disturb it.
    apply(EventBuilder(Kind::needsInput).with(&HookEvent::responseMessage, "Waiting"));
    apply(EventBuilder(Kind::permissionRequest));
    EXPECT_EQ(session().pendingApproval->id, "d1");
    EXPECT_EQ(session().pendingExternalResponse, std::nullopt);
    EXPECT_EQ(announced, QStringList{"needsInput"});

    // Nor does a tool that starts meanwhile.
    apply(Kind::toolUse);
    EXPECT_EQ(session().state, SessionState::working);
    EXPECT_EQ(session().pendingApproval->id, "d1");

    apply(EventBuilder(Kind::permissionRequest)
              .of(AgentKind::codex)
              .with(&HookEvent::decisionID, "d1"));
    EXPECT_EQ(session().pendingApproval, (PendingApproval{"d1", "tool", {}, limit, false}));
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(StoreTest, ShowsWhatOnlyTheTerminalCanAnswer) {
    const EventBuilder notice =
        EventBuilder(Kind::needsInput).with(&HookEvent::responseMessage, "Waiting");
    const EventBuilder manyChoices = EventBuilder::parked("d2").asking({"Q"}, true);
    const EventBuilder fromCodex = EventBuilder::parked("d2").of(AgentKind::codex).asking({"Q"});
    struct Case {
        EventBuilder event;
        QStringList released;
        qsizetype questions;
        std::optional<QString> message;
    };
    const Case cases[] = {
        {notice, {}, 0, "Waiting"},
        {EventBuilder(Kind::permissionRequest), {}, 0, {}},
        {manyChoices.with(&HookEvent::responseMessage, "m"), {"d2 ask"}, 1, "m"},
        {fromCodex, {"d2 ask"}, 1, {}},
    };
    for (const Case &expected : cases) {
        apply(Kind::sessionStart);
        apply(expected.event);
        EXPECT_EQ(session().state, SessionState::needsInput);
        EXPECT_EQ(session().pendingDecisionID(), std::nullopt);
        ASSERT_TRUE(session().pendingExternalResponse);
        EXPECT_EQ(session().pendingExternalResponse->questions.size(), expected.questions);
        EXPECT_EQ(session().pendingExternalResponse->fallbackMessage, expected.message);
        EXPECT_EQ(take(resolved), expected.released);
    }
    const Kind clearing[] = {Kind::sessionStart, Kind::promptSubmit, Kind::toolUse,
                             Kind::idle,         Kind::turnEnd,      Kind::turnFailed};
    for (const Kind kind : clearing) {
        apply(notice);
        apply(kind);
        EXPECT_EQ(session().pendingExternalResponse, std::nullopt);
    }
    apply(notice);
    parkApproval("d3");
    EXPECT_EQ(session().pendingExternalResponse, std::nullopt);
}

TEST_F(StoreTest, LetsANewerRequestTakeThePlaceOfAnOlder) {
    parkApproval("d1");
    parkApproval("d1");
    EXPECT_EQ(resolved, QStringList());
    parkQuestions("d2", {"Q"});
    EXPECT_EQ(take(resolved), QStringList{"d1 ask"});
    EXPECT_EQ(stateAtRelease.pendingDecisionID(), "d1");
    EXPECT_EQ(session().pendingApproval, std::nullopt);
    EXPECT_EQ(session().pendingQuestion->id, "d2");
    apply(EventBuilder::parked("d3").asking({"Q"}, true));
    EXPECT_EQ(resolved, (QStringList{"d3 ask", "d2 ask"}));
    EXPECT_EQ(session().pendingDecisionID(), std::nullopt);
    EXPECT_TRUE(session().pendingExternalResponse);
}

TEST_F(StoreTest, ReleasesAHookOnceItsReasonIsGone) {
    const auto expectRelease = [this](bool releases, const std::function<void()> &action) {
        for (const EventBuilder &waiting :
             {EventBuilder::parked("d"), EventBuilder::parked("d").asking({"Q"})}) {
            apply(waiting);
            action();
            EXPECT_EQ(take(resolved), releases ? QStringList{"d ask"} : QStringList());
            const Session left = store.sessions().value("s");
            EXPECT_EQ(left.pendingDecisionID().has_value(), !releases);
            EXPECT_FALSE(releases && stateAtRelease.pendingDecisionID());
            apply(Kind::sessionEnd);
            take(resolved);
        }
    };
    for (const Kind kind : {Kind::sessionStart, Kind::toolUse, Kind::idle, Kind::subagentStop}) {
        expectRelease(false, [&] { apply(kind); });
    }
    for (const Kind kind :
         {Kind::promptSubmit, Kind::turnEnd, Kind::turnFailed, Kind::sessionEnd}) {
        expectRelease(true, [&] { apply(kind); });
    }
    expectRelease(true, [&] { store.removeSessions(""); });
    expectRelease(false, [&] { store.removeSessions("/a"); });
}

TEST_F(StoreTest, CarriesADecisionBackAfterTheSessionHasMoved) {
    struct Case {
        AgentDecision decision;
        const char *sent;
        SessionState state;
    };
    const Case cases[] = {
        {AgentDecision::allow(), "d allow", SessionState::working},
        {AgentDecision::deny(), "d deny", SessionState::working},
        {AgentDecision::allowRemembering(Scope::permanent), "d remember", SessionState::working},
        {AgentDecision::ask(), "d ask", SessionState::needsInput},
    };
    for (const Case &expected : cases) {
        parkApproval("d");
        const Date asked = scheduler.now();
        scheduler.advance(Seconds(5));
        take(announced);
        store.decide("s", expected.decision);
        EXPECT_EQ(take(resolved), QStringList{expected.sent});
        EXPECT_EQ(session().state, expected.state);
        EXPECT_TRUE(session().acknowledged);
        EXPECT_EQ(session().pendingDecisionID(), std::nullopt);
        EXPECT_EQ(session().stateChangedAt, scheduler.now());
        EXPECT_EQ(session().lastEventAt, asked);
        EXPECT_TRUE(stateAtRelease == session());
        EXPECT_EQ(announced, QStringList());
        store.decide("s", expected.decision);
        EXPECT_EQ(resolved, QStringList());
    }
    parkQuestions("d", {"Q"});
    store.decide("s", AgentDecision::deny());
    EXPECT_EQ(session().pendingQuestion->id, "d");
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(StoreTest, SendsAnswersOnceAllQuestionsHaveOne) {
    parkQuestions("d", {"Q1", "Q2"});
    scheduler.advance(Seconds(5));
    store.answer("s", "Q2", "Yes");
    store.answer("s", "Q2", "No");
    EXPECT_EQ(resolved, QStringList());
    EXPECT_EQ(session().state, SessionState::needsInput);
    EXPECT_EQ(session().pendingQuestion->firstUnanswered(), 0);
    store.answer("s", "Q1", "Yes");
    EXPECT_EQ(take(resolved), QStringList{"d answer Q1=Yes Q2=No"});
    EXPECT_EQ(session().state, SessionState::working);
    EXPECT_TRUE(session().acknowledged);
    EXPECT_EQ(session().pendingQuestion, std::nullopt);
    EXPECT_EQ(session().stateChangedAt, scheduler.now());
    EXPECT_TRUE(stateAtRelease == session());
    store.answer("s", "Q1", "Yes");
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(StoreTest, ChoosesByTheOrderOfTheButtons) {
    const std::pair<AgentKind, QList<const char *>> cases[] = {
        {AgentKind::claude, {"d deny", "d allow", "d remember", nullptr}},
        {AgentKind::codex, {"d deny", "d allow", nullptr}},
    };
    for (const auto &[agent, sent] : cases) {
        for (qsizetype index = -1; index < sent.size(); ++index) {
            apply(EventBuilder::parked("d").of(agent));
            store.chooseByIndex("s", index);
            const char *expected = index < 0 ? nullptr : sent[index];
            EXPECT_EQ(take(resolved), expected ? QStringList{expected} : QStringList());
        }
    }
    parkQuestions("q", {"Q1", "Q2"});
    take(resolved);
    store.chooseByIndex("s", 2);
    store.chooseByIndex("s", 1);
    EXPECT_EQ(resolved, QStringList());
    store.chooseByIndex("s", 0);
    EXPECT_EQ(resolved, QStringList{"q answer Q1=No Q2=Yes"});
}

TEST_F(StoreTest, ForgetsADecisionThatHasExpired) {
    parkQuestions("d2", {"Q"});
    apply(EventBuilder::parked("d1").in("other"));
    const Session before = session();
    const Session other = session("other");
    take(published);
    scheduler.advance(Seconds(1));
    store.approvalExpired("d3");
    EXPECT_EQ(published, 0);
    store.approvalExpired("d2");
    Session expected = before;
    expected.pendingQuestion.reset();
    EXPECT_TRUE(session() == expected);
    EXPECT_TRUE(session("other") == other);
    store.approvalExpired("d1");
    EXPECT_EQ(session("other").pendingApproval, std::nullopt);
    EXPECT_EQ(session("other").state, SessionState::needsInput);
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(StoreTest, OffersTheFirstSessionThatWaitsToTheKeys) {
    EXPECT_EQ(store.sessionAwaitingDecision(), std::nullopt);
    apply(EventBuilder(Kind::needsInput).in("external"));
    EXPECT_EQ(store.sessionAwaitingDecision(), std::nullopt);
    apply(EventBuilder::parked("d1").in("older"));
    scheduler.advance(Seconds(1));
    apply(EventBuilder::parked("d2").in("newer"));
    EXPECT_EQ(store.sessionAwaitingDecision()->id, "newer");
    scheduler.advance(Seconds(1));
    apply(EventBuilder(Kind::toolUse).in("newer"));
    EXPECT_EQ(store.sessionAwaitingDecision()->id, "older");
    apply(EventBuilder(Kind::sessionStart).in("older"));
    EXPECT_EQ(store.sessionAwaitingDecision()->id, "newer");
}

TEST_F(StoreTest, MarksAsSeenAndTellsOnlyOfChanges) {
    bringInto(SessionState::done, "done");
    bringInto(SessionState::failed, "failed");
    bringInto(SessionState::needsInput, "prompt");
    take(published);
    store.acknowledgeDone();
    EXPECT_EQ(take(published), 1);
    EXPECT_TRUE(session("done").acknowledged);
    EXPECT_TRUE(session("failed").acknowledged);
    EXPECT_FALSE(session("prompt").acknowledged);
    store.acknowledge("prompt");
    EXPECT_EQ(take(published), 1);
    EXPECT_TRUE(session("prompt").acknowledged);

    store.acknowledgeDone();
    store.acknowledge("prompt");
    store.acknowledge("unknown");
    store.removeSessions("/nowhere");
    store.decide("prompt", AgentDecision::allow());
    store.answer("prompt", "Q", "A");
    store.chooseByIndex("prompt", 0);
    store.chooseByIndex("unknown", 0);
    store.approvalExpired("");
    EXPECT_EQ(published, 0);
}

TEST_F(StoreTest, ReadsTranscriptsThatHaveSomethingNew) {
    apply(Kind::toolUse);
    apply(Kind::turnEnd);
    EXPECT_EQ(take(reads), QStringList());
    apply(withTranscript(Kind::promptSubmit));
    EXPECT_EQ(take(reads), QStringList());
    // As long as no read has told the model, each tool may be the one to bring it.
    apply(Kind::toolUse);
    EXPECT_EQ(take(reads), QStringList{"Claude Code /t.jsonl"});
    finishRead();
    apply(EventBuilder(Kind::toolUse).of(AgentKind::codex));
    EXPECT_EQ(take(reads), QStringList{"Codex /t.jsonl"});
    finishRead({"opus", {}, {}, {}, {}});
    // From then on it is enough now and then, but for the end of a turn.
    scheduler.advance(Seconds(15));
    apply(Kind::toolUse);
    EXPECT_EQ(take(reads).size(), 0);
    scheduler.advance(Seconds(0.1));
    apply(Kind::toolUse);
    EXPECT_EQ(take(reads).size(), 1);
    finishRead();
    apply(Kind::toolUse);
    EXPECT_EQ(take(reads).size(), 0);
    for (const Kind end : {Kind::turnEnd, Kind::turnFailed}) {
        apply(end);
        apply(end);
        EXPECT_EQ(take(reads).size(), 1);
        finishRead();
    }
    // A session that comes again is a new one.
    apply(Kind::sessionEnd);
    apply(withTranscript(Kind::toolUse));
    EXPECT_EQ(take(reads).size(), 1);
}

TEST_F(StoreTest, ReadsOneTranscriptOfASessionAtATime) {
    apply(withTranscript(Kind::toolUse));
    apply(withTranscript(Kind::toolUse).in("other"));
    EXPECT_EQ(take(reads).size(), 2);
    scheduler.advance(Seconds(60));
    apply(Kind::toolUse);
    apply(Kind::turnEnd);
    EXPECT_EQ(reads.size(), 0);
    // The end of the turn has found a read that ran, which isn't one of a completion.
    finishRead({"opus", "All done.", 5, {}, {}});
    EXPECT_EQ(session().model, "opus");
    EXPECT_EQ(session().summary, std::nullopt);
    EXPECT_EQ(store.completedHistory().first().summary, std::nullopt);
    apply(Kind::promptSubmit);
    apply(Kind::turnEnd);
    EXPECT_EQ(take(reads).size(), 1);
    EXPECT_EQ(running.size(), 2u);
}

TEST_F(StoreTest, TakesWhatATranscriptTellsAndKeepsTheRest) {
    apply(withTranscript(Kind::toolUse));
    finishRead({"opus", "Under way.", 1200, "plan", "Title"});
    EXPECT_EQ(session().model, "opus");
    EXPECT_EQ(session().contextTokens, 1200);
    EXPECT_EQ(session().permissionMode, "plan");
    EXPECT_EQ(session().aiTitle, "Title");
    EXPECT_EQ(session().summary, std::nullopt);
    take(published);

    const Session before = session();
    scheduler.advance(Seconds(16));
    apply(Kind::toolUse);
    take(published);
    finishRead({"opus", "Still under way.", {}, "plan", {}});
    EXPECT_EQ(published, 0);
    EXPECT_EQ(session().aiTitle, before.aiTitle);
    scheduler.advance(Seconds(16));
    apply(Kind::toolUse);
    take(published);
    finishRead({{}, {}, 1300, {}, {}});
    EXPECT_EQ(take(published), 1);
    EXPECT_EQ(session().contextTokens, 1300);
    EXPECT_EQ(session().model, "opus");
}

TEST_F(StoreTest, SumsUpAFinishedSessionByItsLastWords) {
    int historyChanges = 0;
    QObject::connect(&store, &SessionStore::completedHistoryChanged, &store,
                     [&] { ++historyChanges; });
    const auto finish = [this](const QString &id, const QString &cwd) {
        apply(withTranscript(Kind::turnEnd).in(id).with(&HookEvent::cwd, cwd));
    };
    const auto summary = [this](int record) { return store.completedHistory()[record].summary; };
    finish("s", "/p");
    take(historyChanges);
    finishRead({{}, "All done.", {}, {}, {}});
    EXPECT_EQ(session().summary, "All done.");
    EXPECT_EQ(summary(0), "All done.");
    EXPECT_EQ(historyChanges, 1);
    Defaults reread(home.path("defaults"), "test.domain");
    EXPECT_EQ(CompletedHistory(reread).records(), store.completedHistory());

    // A read without words changes none, and a session that runs again has none yet.
    apply(Kind::promptSubmit);
    apply(Kind::turnEnd);
    finishRead();
    EXPECT_EQ(session().summary, std::nullopt);
    apply(Kind::promptSubmit);
    apply(Kind::turnEnd);
    apply(Kind::promptSubmit);
    finishRead({{}, "Late.", {}, {}, {}});
    EXPECT_EQ(session().summary, std::nullopt);
    EXPECT_EQ(summary(0), "Late.");

    // The record is found by the folder that the session had when the read began.
    finish("gone", "/q");
    apply(EventBuilder(Kind::sessionEnd).in("gone"));
    finishRead({"opus", "Gone.", {}, {}, {}});
    EXPECT_EQ(summary(0), "Gone.");
    EXPECT_FALSE(store.sessions().contains("gone"));
    finish("moves", "/r");
    apply(EventBuilder(Kind::subagentStop).in("moves"));
    apply(EventBuilder(Kind::toolUse).in("moves").with(&HookEvent::cwd, "/elsewhere"));
    finishRead({{}, "Moved.", {}, {}, {}});
    EXPECT_EQ(summary(0), "Moved.");
    EXPECT_EQ(store.completedHistory().first().id, "/r");
}

TEST_F(StoreTest, EntersSessionsThatWereFoundOnDisk) {
    settings.setAutoClearMinutes(10);
    settings.setName("Mine", "/p");
    apply(EventBuilder(Kind::promptSubmit).in("live"));
    const Session live = session("live");
    const Date now = scheduler.now();
    const Date oldest = now - Seconds(600);
    store.restore({{"old", AgentKind::codex, "/p", "/old.jsonl", oldest - Seconds(0.001)},
                   {"live", AgentKind::codex, "/p", "/live.jsonl", now},
                   {"s", AgentKind::codex, "/p", "/s.jsonl", oldest},
                   {"s", AgentKind::claude, "/q", "/twice.jsonl", now},
                   {"later", AgentKind::claude, "", "/later.jsonl", now + Seconds(5)}});
    EXPECT_FALSE(store.sessions().contains("old"));
    EXPECT_EQ(session("live"), live);
    Session expected;
    expected.id = "s";
    expected.agent = AgentKind::codex;
    expected.cwd = "/p";
    expected.transcriptPath = "/s.jsonl";
    expected.startedAt = expected.lastEventAt = expected.stateChangedAt = oldest;
    expected.gitBranch = "branch of /p";
    expected.customName = "Mine";
    EXPECT_EQ(session(), expected);
    EXPECT_EQ(session("later").displayName(), "session");
    EXPECT_EQ(reads, (QStringList{"Codex /s.jsonl", "Claude Code /later.jsonl"}));
    EXPECT_EQ(announced, QStringList());

    finishRead({"gpt-5", "Asked for more.", 9, "never", "Title"});
    EXPECT_EQ(session().summary, "Asked for more.");
    EXPECT_EQ(session().model, "gpt-5");
    EXPECT_EQ(session().state, SessionState::idle);
    EXPECT_TRUE(store.completedHistory().isEmpty());
    // A summary that has come meanwhile is newer, and the read hasn't counted as one of a turn's.
    apply(EventBuilder(Kind::toolUse).in("s"));
    finishRead({"opus", "Read late.", {}, {}, {}});
    EXPECT_EQ(session("later").summary, "Read late.");
    EXPECT_EQ(reads.size(), 3);

    scheduler.advance(Seconds(60));
    EXPECT_TRUE(store.sessions().contains("later"));
    scheduler.advance(Seconds(600));
    EXPECT_FALSE(store.sessions().contains("later"));
}

TEST_F(StoreTest, ClearsSessionsThatHaveRestedLongEnough) {
    settings.setAutoClearMinutes(5);
    for (const SessionState state :
         {SessionState::working, SessionState::needsInput, SessionState::done, SessionState::failed,
          SessionState::idle}) {
        bringInto(state, nameOf(state));
    }
    parkApproval("d");
    apply(Kind::sessionStart);
    take(resolved);
    scheduler.advance(Seconds(300));
    EXPECT_EQ(store.sessions().size(), 6);
    take(published);
    scheduler.advance(Seconds(59));
    EXPECT_EQ(published, 0);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(store.sessions().size(), 2);
    EXPECT_TRUE(store.sessions().contains("working"));
    EXPECT_TRUE(store.sessions().contains("needsInput"));
    EXPECT_EQ(resolved, QStringList{"d ask"});
    EXPECT_EQ(store.completedHistory().size(), 2);
    scheduler.advance(Seconds(86'400));
    EXPECT_EQ(store.sessions().size(), 2);
}

TEST_F(StoreTest, KeepsOneRecordOfEachFolder) {
    const auto finish = [this](const QString &id, const QString &cwd, Kind kind = Kind::turnEnd) {
        apply(EventBuilder(Kind::promptSubmit).in(id).with(&HookEvent::cwd, cwd));
        apply(EventBuilder(kind).in(id));
    };
    for (int folder = 0; folder < 11; ++folder) {
        finish(QString::number(folder), "/" + QString::number(folder));
    }
    EXPECT_EQ(store.completedHistory().size(), 10);
    EXPECT_EQ(store.completedHistory().first().id, "/10");
    EXPECT_EQ(store.completedHistory().last().id, "/1");

    scheduler.advance(Seconds(1));
    finish("another", "/5", Kind::turnFailed);
    EXPECT_EQ(store.completedHistory().size(), 10);
    EXPECT_EQ(store.completedHistory().first().id, "/5");
    EXPECT_TRUE(store.completedHistory().first().failed);
    const Date finishedAt = scheduler.now();
    EXPECT_EQ(store.completedHistory().first().finishedAt, finishedAt);
    scheduler.advance(Seconds(1));
    apply(EventBuilder(Kind::turnFailed).in("another"));
    EXPECT_EQ(store.completedHistory().first().finishedAt, finishedAt);
}

TEST_F(StoreTest, NamesAFolderForItsSessionsAndItsRecord) {
    const auto in = [](const QString &id, const QString &cwd) {
        return EventBuilder(Kind::turnEnd).in(id).with(&HookEvent::cwd, cwd);
    };
    apply(in("a", "/p"));
    apply(in("b", "/p"));
    apply(in("c", "/p/q"));
    store.removeSessions("/p/q");
    apply(Kind::promptSubmit);
    take(published);
    const auto recordNames = [this] {
        return QStringList{store.completedHistory()[0].name, store.completedHistory()[1].name};
    };
    store.renameCwd("/p", "Mine");
    EXPECT_EQ(session("a").customName, "Mine");
    EXPECT_EQ(session("b").customName, "Mine");
    EXPECT_EQ(session().customName, std::nullopt);
    EXPECT_EQ(recordNames(), (QStringList{"q", "Mine"}));
    EXPECT_EQ(take(published), 1);
    store.renameCwd("/p/q", "Archived");
    EXPECT_EQ(published, 0);
    Defaults reread(home.path("defaults"), "test.domain");
    EXPECT_EQ(CompletedHistory(reread).records(), store.completedHistory());

    store.renameCwd("/p", "");
    EXPECT_EQ(session("a").customName, std::nullopt);
    EXPECT_EQ(recordNames(), (QStringList{"Archived", "p"}));
    store.renameCwd("", "Nobody's");
    EXPECT_EQ(settings.sessionNames().size(), 1);
    EXPECT_EQ(session().customName, std::nullopt);
}

/// Whoever asks, between whichever changes, is told what holds at that moment.
TEST_F(StoreTest, ListsWhatThereIsNow) {
    const auto ids = [](const auto &list) {
        QStringList result;
        for (const auto &entry : list) {
            result.append(entry.id);
        }
        return result.join(" ");
    };
    EXPECT_EQ(store.aggregatedState(), std::nullopt);
    EXPECT_FALSE(store.hasReportableSessions());
    apply(EventBuilder(Kind::sessionStart).in("i"));
    EXPECT_EQ(store.aggregatedState(), SessionState::idle);
    EXPECT_EQ(ids(store.openSessions()), "i");
    scheduler.advance(Seconds(1));
    apply(EventBuilder(Kind::promptSubmit).in("w").of(AgentKind::codex));
    EXPECT_EQ(store.aggregatedState(), SessionState::working);
    EXPECT_EQ(store.aggregatedStateSince(), scheduler.now());
    EXPECT_TRUE(store.hasReportableSessions());
    EXPECT_TRUE(store.showsAgentBadges());
    EXPECT_FALSE(store.hasWorkingUsageMilestoneSession());
    apply(EventBuilder(Kind::turnEnd).in("d").with(&HookEvent::cwd, "/d"));
    EXPECT_EQ(ids(store.sortedSessions()), "w d i");
    EXPECT_EQ(ids(store.activeSessions()), "w");
    EXPECT_EQ(ids(store.reportableSessions()), "w d");
    EXPECT_EQ(ids(store.recentlyCompleted()), "/d");
    EXPECT_EQ(store.aggregatedState(), SessionState::done);
    store.acknowledgeDone();
    EXPECT_EQ(store.aggregatedState(), SessionState::working);

    parkApproval("d");
    EXPECT_TRUE(store.hasPendingDecision());
    EXPECT_TRUE(store.hasUnacknowledgedNeedsInput());
    EXPECT_EQ(ids(store.activeSessions()), "s w");
    store.decide("s", AgentDecision::allow());
    EXPECT_FALSE(store.hasPendingDecision());
    EXPECT_FALSE(store.hasUnacknowledgedNeedsInput());
    EXPECT_TRUE(store.hasWorkingUsageMilestoneSession());
    parkApproval("e");
    EXPECT_TRUE(store.hasPendingDecision());
    store.approvalExpired("e");
    EXPECT_FALSE(store.hasPendingDecision());
    apply(Kind::needsInput);
    EXPECT_TRUE(store.hasExternalPrompt());

    store.renameCwd("/d", "Mine");
    EXPECT_EQ(store.jumpableCompleted().first().name, "Mine");
    EXPECT_EQ(store.recentlyCompleted().first().name, "Mine");
    store.removeSessions("/d");
    EXPECT_EQ(ids(store.recentlyCompleted()), "");
    EXPECT_EQ(ids(store.archivedCompleted()), "/d");
    EXPECT_EQ(ids(store.sortedSessions()), "s w i");
    store.renameCwd("/d", {});
    EXPECT_EQ(store.archivedCompleted().first().name, "d");
    scheduler.advance(Seconds(700));
    EXPECT_EQ(ids(store.openSessions()), "");
    EXPECT_EQ(ids(store.sortedSessions()), "s w");
}

} // namespace
} // namespace morvane
