#include "Core/StoreFixture.h"

namespace morvane {
namespace {

class TranscriptsTest : public StoreFixture {
protected:
    /// The summary of the latest record.
    auto summary() const { return store.completedHistory().first().summary; }

    auto readsAfter(Kind kind) {
        apply(kind);
        return take(reads).size();
    }

    static EventBuilder withTranscript(Kind kind) {
        return EventBuilder(kind).with(&HookEvent::transcriptPath, "/t.jsonl");
    }
};

TEST_F(TranscriptsTest, ReadsTranscriptsThatHaveSomethingNew) {
    apply(Kind::turnEnd);
    apply(withTranscript(Kind::promptSubmit));
    apply(EventBuilder(Kind::toolUse).of(AgentKind::gemini));
    EXPECT_EQ(take(reads), QStringList());
    // Until a read has told the model, each tool use starts another.
    apply(Kind::toolUse);
    EXPECT_EQ(take(reads), QStringList{"Claude Code /t.jsonl"});
    finishRead();
    apply(EventBuilder(Kind::toolUse).of(AgentKind::codex));
    EXPECT_EQ(take(reads), QStringList{"Codex /t.jsonl"});
    finishRead({"opus", {}, {}, {}, {}});
    // After that only one now and then starts a read, but every end of a turn does.
    scheduler.advance(Seconds(15));
    EXPECT_EQ(readsAfter(Kind::toolUse), 0);
    scheduler.advance(Seconds(0.1));
    EXPECT_EQ(readsAfter(Kind::toolUse), 1);
    finishRead();
    EXPECT_EQ(readsAfter(Kind::toolUse), 0);
    for (const Kind end : {Kind::turnEnd, Kind::turnFailed}) {
        EXPECT_EQ(readsAfter(end), 1);
        EXPECT_EQ(readsAfter(end), 0);
        finishRead();
    }
    // A clock that was set back delays no read.
    EXPECT_EQ(readsAfter(Kind::toolUse), 0);
    scheduler.setClock(Seconds(-60));
    EXPECT_EQ(readsAfter(Kind::toolUse), 1);
}

TEST_F(TranscriptsTest, ReadsOneTranscriptOfASessionAtATime) {
    apply(withTranscript(Kind::toolUse));
    apply(withTranscript(Kind::toolUse).in("other"));
    EXPECT_EQ(take(reads).size(), 2);
    scheduler.advance(Seconds(60));
    apply(Kind::toolUse);
    apply(Kind::turnEnd);
    EXPECT_EQ(reads.size(), 0);
    // The read was running when the turn ended, so it doesn't tell the last words of that turn.
    finishRead({"opus", "All done.", 5, {}, {}});
    EXPECT_EQ(session().model, "opus");
    EXPECT_EQ(summary(), std::nullopt);
    apply(Kind::promptSubmit);
    EXPECT_EQ(readsAfter(Kind::turnEnd), 1);
}

TEST_F(TranscriptsTest, TakesWhatATranscriptTellsAndKeepsTheRest) {
    apply(withTranscript(Kind::toolUse));
    Session expected = session();
    finishRead({"opus", "Under way.", 1200, "plan", "Title"});
    for (const int tokens : {1200, 1300}) {
        scheduler.advance(Seconds(16));
        apply(Kind::toolUse);
        take(published);
        finishRead({{}, "Still under way.", tokens, "plan", {}});
        EXPECT_EQ(published, tokens == 1200 ? 0 : 1);
    }
    expected.model = "opus";
    expected.contextTokens = 1300;
    expected.permissionMode = "plan";
    expected.aiTitle = "Title";
    expected.lastEventAt = scheduler.now();
    EXPECT_EQ(session(), expected);
}

TEST_F(TranscriptsTest, SumsUpAFinishedSessionByItsLastWords) {
    int historyChanges = 0;
    QObject::connect(&store, &SessionStore::completedHistoryChanged, &store,
                     [&] { ++historyChanges; });
    const auto finish = [this](const QString &id, const QString &cwd) {
        apply(withTranscript(Kind::turnEnd).in(id).at(cwd));
    };
    finish("s", "/p");
    take(historyChanges);
    finishRead("All done.");
    EXPECT_EQ(session().summary, "All done.");
    EXPECT_EQ(summary(), "All done.");
    EXPECT_EQ(historyChanges, 1);

    // A read without last words leaves the summary, and a session that runs again has none yet.
    apply(Kind::promptSubmit);
    EXPECT_EQ(session().summary, std::nullopt);
    apply(Kind::turnEnd);
    apply(Kind::promptSubmit);
    finishRead("Late.");
    EXPECT_EQ(session().summary, std::nullopt);
    EXPECT_EQ(summary(), "Late.");
    apply(Kind::turnEnd);
    finishRead();
    EXPECT_EQ(session().summary, std::nullopt);

    // The record is found by the folder that the session had when the read began.
    finish("gone", "/q");
    apply(EventBuilder(Kind::sessionEnd).in("gone"));
    finishRead("Gone.");
    EXPECT_EQ(summary(), "Gone.");
    EXPECT_FALSE(store.sessions().contains("gone"));
    finish("moves", "/r");
    apply(EventBuilder(Kind::toolUse).in("moves").at("/elsewhere"));
    finishRead("Moved.");
    EXPECT_EQ(summary(), "Moved.");
    EXPECT_EQ(store.completedHistory().first().id, "/r");

    // The words don't go to another session's record, which has finished in that folder since.
    finish("first", "/p");
    scheduler.advance(Seconds(0.1));
    finish("second", "/p");
    finishRead("Of the first.");
    EXPECT_EQ(session("first").summary, "Of the first.");
    EXPECT_EQ(summary(), std::nullopt);
}

TEST_F(TranscriptsTest, WaitsALittleForLastWordsThatAreWrittenLate) {
    apply(withTranscript(Kind::turnEnd));
    finishRead("Of the turn before.");
    take(reads);
    scheduler.advance(Seconds(0.25));
    finishRead("All done.");
    EXPECT_EQ(session().summary, "All done.");
    EXPECT_EQ(summary(), "All done.");
    // No read starts beside one that still runs, and none later than two seconds after the end.
    scheduler.advance(Seconds(2));
    EXPECT_EQ(take(reads).size(), 2);
    finishRead("All is done.");
    scheduler.advance(Seconds(50));
    EXPECT_EQ(reads.size(), 0);
    EXPECT_EQ(summary(), "All is done.");

    // None starts once the next turn has begun, or when the hook has told the last words.
    apply(Kind::promptSubmit);
    apply(Kind::turnEnd);
    scheduler.advance(Seconds(0.1));
    apply(Kind::promptSubmit);
    apply(EventBuilder(Kind::turnEnd).with(&HookEvent::lastWords, "Said."));
    take(reads);
    running.clear();
    scheduler.advance(Seconds(2));
    EXPECT_EQ(reads.size(), 0);
    EXPECT_EQ(session().summary, "Said.");
}

TEST_F(TranscriptsTest, EntersSessionsThatWereFoundOnDisk) {
    settings.setAutoClearMinutes(10);
    settings.setName("Mine", "/p");
    apply(EventBuilder(Kind::promptSubmit).in("live"));
    const Session live = session("live");
    const Date now = scheduler.now();
    const Date oldest = now - Seconds(600);
    take(published);
    store.restore({});
    EXPECT_EQ(published, 0);
    store.restore({{"old", AgentKind::codex, "/p", "/old.jsonl", oldest - Seconds(0.001)},
                   {"live", AgentKind::codex, "/p", "/live.jsonl", now},
                   {"s", AgentKind::codex, "/p", "/s.jsonl", oldest, "main"},
                   {"s", AgentKind::claude, "/q", "/twice.jsonl", now},
                   {"later", AgentKind::claude, "", "/later.jsonl", now + Seconds(5)}});
    EXPECT_EQ(published, 1);
    EXPECT_FALSE(store.sessions().contains("old"));
    EXPECT_EQ(session("live"), live);
    EXPECT_EQ(session().lastEventAt, oldest);
    EXPECT_EQ(session().stateChangedAt, oldest);
    EXPECT_EQ(session().gitBranch, "main");
    EXPECT_EQ(session().customName, "Mine");
    EXPECT_EQ(reads, (QStringList{"Codex /s.jsonl", "Claude Code /later.jsonl"}));

    finishRead({"gpt-5", "Asked for more.", 9, "never", "Title"});
    EXPECT_EQ(session().summary, "Asked for more.");
    EXPECT_EQ(session().model, "gpt-5");
    EXPECT_TRUE(store.completedHistory().isEmpty());
    // That read doesn't count as one for progress, so a tool use starts the next at once.
    apply(EventBuilder(Kind::toolUse).in("s"));
    finishRead("Read late.");
    EXPECT_EQ(session("later").summary, "Read late.");
    EXPECT_EQ(reads.size(), 3);

    scheduler.advance(Seconds(60));
    EXPECT_TRUE(store.sessions().contains("later"));
    scheduler.advance(Seconds(600));
    EXPECT_FALSE(store.sessions().contains("later"));
}

} // namespace
} // namespace morvane
