#include "Core/Sessions/SessionOrder.h"

#include "Core/StoreFixture.h"

#include <string>

namespace morvane {
namespace {

using enum SessionState;

constexpr Date noon{std::chrono::seconds(1'700'000'000)};

/// A session whose state changed, and whose last event came, so many seconds after noon.
Session session(const QString &id, SessionState state, bool acknowledged, int changed,
                int lastEvent = 0) {
    Session result;
    result.id = id;
    result.state = state;
    result.acknowledged = acknowledged;
    result.stateChangedAt = noon + Seconds(changed);
    result.lastEventAt = noon + Seconds(lastEvent);
    return result;
}

Sessions table(const QList<Session> &list) {
    Sessions result;
    for (const Session &entry : list) {
        result.insert(entry.id, entry);
    }
    return result;
}

TEST(AggregateStatus, ShowsWhatCallsForAttentionBeforeWork) {
    const Session all[] = {session("a", needsInput, false, 1), session("b", needsInput, true, 90),
                           session("c", failed, false, 2),     session("d", failed, true, 91),
                           session("e", done, false, 3),       session("f", done, true, 92),
                           session("g", working, true, 4),     session("h", working, false, 5),
                           session("i", idle, true, 93)};
    // The sessions that exist, and their aggregate state with the second at which it began.
    const std::tuple<std::string, SessionState, std::optional<int>> cases[] = {
        {"abcdefghi", needsInput, 1},
        {"bcdefghi", failed, 2},
        {"bdefghi", done, 3},
        {"bdfghi", working, 5},
        {"bdfgi", working, 4},
        {"bdfi", failed, 91},
        {"bfi", done, 92},
        {"bi", idle, 93},
        {"b", idle, {}}};
    EXPECT_EQ(AggregateStatus::of({}), AggregateStatus());
    for (const auto &[present, state, since] : cases) {
        Sessions sessions;
        for (const char id : present) {
            sessions.insert(QString(QLatin1Char(id)), all[id - 'a']);
        }
        const AggregateStatus status = AggregateStatus::of(sessions);
        EXPECT_EQ(status.state, state) << present;
        EXPECT_EQ(status.since, since ? std::optional(noon + Seconds(*since)) : std::nullopt)
            << present;
    }
}

TEST(SessionOrder, ListsByUrgencyAndThenByTheLatestEvent) {
    const QList<Session> all{
        session("a", idle, true, 0, 99),      session("b", done, false, 0, 50),
        session("c", failed, true, 0, 10),    session("d", working, true, 0, 20),
        session("e", needsInput, true, 0, 1), session("f", working, true, 0, 30),
        session("g", done, true, 0, 51),
    };
    const QList<Session> sorted = SessionOrder::sorted(table(all));
    EXPECT_EQ(ids(sorted), "efdcgba");
    EXPECT_EQ(ids(SessionOrder::active(sorted)), "efd");
    EXPECT_EQ(ids(SessionOrder::reportable(sorted)), "efdcgb");
    EXPECT_EQ(ids(SessionOrder::open(sorted)), "a");
}

TEST(SessionOrder, KeepsRowsThatTieInPlace) {
    QList<Session> all;
    for (char id = 'z'; id >= 'a'; --id) {
        all.append(session(QString(QLatin1Char(id)), working, true, 0, 7));
    }
    EXPECT_EQ(ids(SessionOrder::sorted(table(all))), "abcdefghijklmnopqrstuvwxyz");
}

TEST(SessionOrder, NamesTheAgentsOnceThereAreSeveral) {
    Sessions sessions;
    sessions["a"].agent = AgentKind::codex;
    EXPECT_FALSE(SessionOrder::showsAgentBadges(sessions, {}));
    EXPECT_TRUE(SessionOrder::showsAgentBadges(sessions, {CompletedRecord()}));
}

TEST(SessionOrder, ARecordIsRecentWhileItsSessionIsThere) {
    QList<CompletedRecord> history;
    for (const char *id : {"a", "b", "loose", "d", "e", "f"}) {
        history.append(CompletedRecord());
        history.last().id = QString::fromLatin1(id);
    }
    Sessions sessions = table({session("1", done, true, 0), session("loose", failed, true, 0),
                               session("3", working, true, 0), session("4", done, true, 0)});
    sessions["1"].cwd = "b";
    sessions["3"].cwd = "d";
    sessions["4"].cwd = "f";
    const auto jumpable = SessionOrder::jumpable(history);
    EXPECT_EQ(ids(SessionOrder::recentlyCompleted(jumpable, sessions)), "bloose");
    EXPECT_EQ(ids(SessionOrder::archived(jumpable, sessions)), "ade");
}

TEST(SessionOrder, TheSessionOfARecordIsTheLatestThatHasFinishedInItsPlace) {
    CompletedRecord record;
    record.id = "/srv";
    QList<Session> all{session("early", done, true, 0, 1), session("late", failed, true, 0, 2),
                       session("between", done, true, 0, 1), session("busy", working, true, 0, 9),
                       session("elsewhere", done, true, 0, 9)};
    for (Session &entry : all) {
        entry.cwd = entry.id == "elsewhere" ? "/home" : "/srv";
    }
    EXPECT_EQ(SessionOrder::finishedSession(record, table(all))->id, "late");
    record.id = "/nowhere";
    EXPECT_FALSE(SessionOrder::finishedSession(record, table(all)));
}

} // namespace
} // namespace morvane
