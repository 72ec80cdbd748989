#include "Core/StoreFixture.h"

namespace morvane {
namespace {

using Kind = CanonicalEvent;
using enum SessionState;

class StoreTest : public StoreFixture {
protected:
    /// Brings a session into a state by one event; without a state there is no session.
    void bringInto(std::optional<SessionState> state, const QString &id, const QString &cwd = {}) {
        constexpr std::array ways{Kind::toolUse, Kind::needsInput, Kind::turnEnd, Kind::turnFailed,
                                  Kind::sessionStart};
        if (state) {
            apply(EventBuilder(ways[static_cast<std::size_t>(*state)]).tool("Bash").in(id).at(cwd));
            EXPECT_EQ(session(id).state, *state);
        }
    }
};

TEST_F(StoreTest, MovesThroughItsStates) {
    const auto always = [](const char *state) {
        return std::array{state, state, state, state, state, state};
    };
    const auto agents = EventBuilder(Kind::turnEnd).background({"shell", "workflow"});
    const EventBuilder stop(Kind::subagentStop);
    const EventBuilder end(Kind::sessionEnd);
    // Each event, with the state it leads to from no session and from each of the states below. A
    // dash means that nothing happens at all.
    const std::tuple<const char *, EventBuilder, std::array<const char *, 6>> rows[] = {
        {"start", EventBuilder(Kind::sessionStart), always("idle")},
        {"prompt", EventBuilder(Kind::promptSubmit), always("working")},
        {"tool", EventBuilder(Kind::toolUse), always("working")},
        {"notice", EventBuilder(Kind::needsInput), always("needsInput")},
        {"idle", EventBuilder(Kind::idle), {"idle", "done", "done", "-", "-", "-"}},
        {"turnEnd", EventBuilder(Kind::turnEnd), always("done")},
        {"turnEnd with an agent", agents, always("working")},
        {"turnFailed", EventBuilder(Kind::turnFailed), always("failed")},
        {"subagentStop", stop, {"-", "working", "needsInput", "done", "failed", "idle"}},
        {"sessionEnd", end, {"-", "none", "none", "none", "none", "none"}},
        {"permission", EventBuilder(Kind::permissionRequest), always("needsInput")},
        {"parked", EventBuilder::parked("d"), always("needsInput")}};
    const std::optional<SessionState> starts[] = {{}, working, needsInput, done, failed, idle};
    const auto stateOf = [this](const QString &id) {
        return store.sessions().contains(id) ? nameOf(session(id).state) : "none";
    };
    for (const auto &[name, event, outcomes] : rows) {
        for (std::size_t column = 0; column < std::size(starts); ++column) {
            const QString id = QString(name) + QString::number(column);
            SCOPED_TRACE(id.toStdString());
            bringInto(starts[column], id);
            const QString before = stateOf(id);
            take(announced);
            take(published);
            scheduler.advance(Seconds(1));
            apply(event.in(id));

            const QString after = published > 0 ? stateOf(id) : "-";
            EXPECT_EQ(after, outcomes[column]);
            const bool calls =
                after != before && QStringList{"needsInput", "done", "failed"}.contains(after);
            EXPECT_EQ(announced, calls ? QStringList{after} : QStringList());
            if (published > 0 && after != "none") {
                EXPECT_EQ(session(id).lastEventAt, scheduler.now());
                const bool restarts = after != before || name == QString("prompt");
                EXPECT_EQ(session(id).stateChangedAt == scheduler.now(), restarts);
                EXPECT_FALSE(session(id).isFinished() && session(id).currentTool);
            }
        }
    }
}

TEST_F(StoreTest, LearnsFromWhatAnEventTellsAndKeepsTheRest) {
    settings.setName("Mine", "/a");
    const PaneLocator tmux{"%1", "server", {}, {}, {}, {}, {}, {}};
    const EventBuilder start(Kind::sessionStart);
    apply(start.at("/a")
              .with(&HookEvent::hostBundleID, "bundle")
              .with(&HookEvent::pane, tmux)
              .with(&HookEvent::transcriptPath, "/t.jsonl"));
    Session expected = session();
    EXPECT_EQ(expected.hostAppName, "bundle/-");
    EXPECT_EQ(expected.pane, tmux);
    EXPECT_EQ(expected.gitBranch, "branch of /a");
    EXPECT_EQ(expected.customName, "Mine");
    EXPECT_EQ(expected.transcriptPath, "/t.jsonl");
    EXPECT_EQ(expected.startedAt, scheduler.now());

    settings.setName("Later", "/a");
    apply(start.at("").with(&HookEvent::pane, PaneLocator{{}, "x", {}, {}, {}, {}, {}, {}}));
    apply(start.at("/a"));
    EXPECT_EQ(session(), expected);

    apply(start.of(AgentKind::codex).at("/b").with(&HookEvent::termProgram, "kitty"));
    expected.agent = AgentKind::codex;
    expected.cwd = "/b";
    expected.gitBranch = "branch of /b";
    expected.customName.reset();
    expected.termProgram = "kitty";
    expected.hostAppName = "bundle/kitty";
    EXPECT_EQ(session(), expected);
}

TEST_F(StoreTest, FollowsATurnFromPromptToEnd) {
    const auto tasks = [this] {
        QStringList result;
        for (const Subagent &subagent : session().subagents) {
            result.append(subagent.task + (subagent.done ? " done" : ""));
        }
        return result.join(' ');
    };
    apply(EventBuilder(Kind::promptSubmit).with(&HookEvent::prompt, "Do it"));
    const auto launch = EventBuilder(Kind::toolUse).with(&HookEvent::launchesSubagent, true);
    apply(launch.with(&HookEvent::taskDescription, "Look"));
    apply(launch);
    apply(EventBuilder(Kind::toolUse).tool("Bash"));
    EXPECT_EQ(session().currentTool, "Bash");
    EXPECT_EQ(tasks(), "Look subagent");

    apply(EventBuilder(Kind::subagentStop).with(&HookEvent::agentID, "a").at("/of/the/subagent"));
    EXPECT_EQ(tasks(), "Look done subagent");
    EXPECT_EQ(session().cwd, "");

    // With agents in the background the turn isn't over for the person.
    apply(EventBuilder(Kind::turnEnd).background({"subagent", "workflow"}));
    EXPECT_EQ(session().currentTool, std::nullopt);
    EXPECT_EQ(session().pendingAgents, 2);
    EXPECT_TRUE(session().acknowledged);
    apply(Kind::idle);
    EXPECT_EQ(session().state, working);

    apply(Kind::turnEnd);
    EXPECT_FALSE(session().acknowledged);
    EXPECT_EQ(tasks(), "Look done subagent done");
    EXPECT_EQ(announced, QStringList{"done"});
    EXPECT_EQ(store.completedHistory().value(0).lastPrompt, "Do it");

    apply(Kind::promptSubmit);
    EXPECT_EQ(tasks(), "");
    EXPECT_TRUE(session().acknowledged);
    EXPECT_EQ(session().lastPrompt, "Do it");
}

TEST_F(StoreTest, LeavesASessionAloneWhenItsSubagentSpeaks) {
    apply(EventBuilder::parked("d1"));
    const Session before = session();
    take(published);
    scheduler.advance(Seconds(1));
    for (const Kind kind : {Kind::sessionStart, Kind::promptSubmit, Kind::toolUse, Kind::needsInput,
                            Kind::idle, Kind::turnEnd, Kind::turnFailed, Kind::sessionEnd}) {
        apply(EventBuilder(kind).with(&HookEvent::agentID, "a"));
        apply(EventBuilder(kind).in("other").with(&HookEvent::agentID, "a"));
    }
    apply(EventBuilder::parked("d2").with(&HookEvent::agentID, "a"));
    EXPECT_EQ(session(), before);
    EXPECT_EQ(store.sessions().size(), 1);
    EXPECT_EQ(resolved, QStringList{"d2 ask"});
    EXPECT_EQ(published, 0);
}

TEST_F(StoreTest, MarksAsSeenAndTellsOnlyOfChanges) {
    for (const auto state : {done, failed, needsInput}) {
        bringInto(state, nameOf(state));
    }
    take(published);
    store.acknowledgeDone();
    EXPECT_EQ(take(published), 1);
    EXPECT_TRUE(session("done").acknowledged);
    EXPECT_TRUE(session("failed").acknowledged);
    EXPECT_FALSE(session("needsInput").acknowledged);
    store.acknowledge("needsInput");
    EXPECT_EQ(take(published), 1);
    EXPECT_TRUE(session("needsInput").acknowledged);

    store.acknowledgeDone();
    store.acknowledge("needsInput");
    store.acknowledge("unknown");
    store.removeSessions("/nowhere");
    store.decide("needsInput", AgentDecision::allow());
    store.answer("needsInput", "Q", "A");
    store.chooseByIndex("needsInput", 0);
    store.chooseByIndex("unknown", 0);
    store.approvalExpired("");
    EXPECT_EQ(published, 0);
}

TEST_F(StoreTest, ClearsSessionsThatHaveRestedLongEnough) {
    settings.setAutoClearMinutes(5);
    for (const auto state : {working, needsInput, done, failed, idle}) {
        bringInto(state, nameOf(state));
    }
    apply(EventBuilder::parked("d"));
    apply(Kind::sessionStart);
    scheduler.advance(Seconds(300));
    EXPECT_EQ(store.sessions().size(), 6);
    scheduler.advance(Seconds(60));
    EXPECT_EQ(resolved, QStringList{"d ask"});
    scheduler.advance(Seconds(86'400));
    EXPECT_EQ(ids(store.sortedSessions()), "needsInputworking");
    // Once the clock was set back by more than the limit, nobody knows how long it has rested.
    apply(Kind::turnEnd);
    scheduler.setClock(Seconds(-100));
    scheduler.advance(Seconds(60));
    EXPECT_TRUE(store.sessions().contains("s"));
    scheduler.setClock(Seconds(-86'400));
    scheduler.advance(Seconds(60));
    EXPECT_FALSE(store.sessions().contains("s"));
}

TEST_F(StoreTest, ForgetsThoseOfAFolderThatAreNotAtWork) {
    for (const auto state : {working, needsInput, done, failed, idle}) {
        bringInto(state, nameOf(state) + ' ', "/p");
    }
    apply(Kind::turnEnd);
    store.removeSessions("");
    EXPECT_EQ(store.sessions().size(), 6);
    store.removeSessions("/p");
    EXPECT_EQ(ids(store.sortedSessions()), "needsInput working s");
}

TEST_F(StoreTest, NamesAFolderForItsSessionsAndItsRecord) {
    bringInto(done, "a", "/p");
    bringInto(done, "b", "/p");
    bringInto(done, "c", "/p/q");
    store.removeSessions("/p/q");
    apply(Kind::promptSubmit);
    take(published);
    const auto names = [this] {
        return store.recentlyCompleted().first().name + " " +
               store.archivedCompleted().first().name;
    };
    EXPECT_EQ(names(), "p q");
    store.renameCwd("/p", "Mine");
    EXPECT_EQ(session("a").customName, "Mine");
    EXPECT_EQ(session("b").customName, "Mine");
    EXPECT_EQ(session().customName, std::nullopt);
    EXPECT_EQ(names(), "Mine q");
    EXPECT_EQ(take(published), 1);
    store.renameCwd("/p/q", "Archived");
    EXPECT_EQ(published, 0);

    store.renameCwd("/p", "");
    EXPECT_EQ(session("a").customName, std::nullopt);
    EXPECT_EQ(names(), "p Archived");
    store.renameCwd("", "Nobody's");
    EXPECT_EQ(session().customName, std::nullopt);
}

/// Each query tells what holds at its moment, between any two changes.
TEST_F(StoreTest, ListsWhatThereIsNow) {
    apply(EventBuilder(Kind::sessionStart).in("i"));
    EXPECT_EQ(ids(store.openSessions()), "i");
    EXPECT_FALSE(store.showsAgentBadges());
    apply(EventBuilder(Kind::promptSubmit).in("w").of(AgentKind::codex));
    EXPECT_TRUE(store.showsAgentBadges());
    EXPECT_EQ(ids(store.recentlyCompleted()), "");
    bringInto(done, "d", "/d");
    EXPECT_EQ(ids(store.sortedSessions()), "wdi");
    EXPECT_EQ(ids(store.recentlyCompleted()), "/d");
    EXPECT_EQ(ids(store.archivedCompleted()), "");
    store.removeSessions("/d");
    EXPECT_EQ(ids(store.recentlyCompleted()), "");
    EXPECT_EQ(ids(store.archivedCompleted()), "/d");
}

} // namespace
} // namespace morvane
