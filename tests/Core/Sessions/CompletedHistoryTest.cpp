#include "Core/Sessions/CompletedHistory.h"

#include "Core/Sessions/CompletedHistoryFormat.h"
#include "Core/Sessions/Session.h"
#include "Core/Settings/Defaults.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <nlohmann/json.hpp>

#include <string>

namespace morvane {
namespace {

using nlohmann::json;

constexpr Date finish =
    std::chrono::sys_days(std::chrono::year(2024) / 2 / 29) + std::chrono::milliseconds(1500);

QByteArray bytes(const json &value) {
    return QByteArray::fromStdString(value.dump());
}

/// A stored history of one record, with the required fields and what the test adds to them.
json stored(const json &more = json::object()) {
    json record{{"id", "/p"}, {"name", "Mine"}, {"cwd", "/p"}, {"finishedAt", 1}};
    record.update(more);
    return json::array({record});
}

CompletedRecord onlyRecord(const json &history) {
    const auto records = CompletedHistoryFormat::parse(bytes(history));
    EXPECT_TRUE(records && records->size() == 1) << history;
    return records.value_or(QList<CompletedRecord>()).value(0);
}

CompletedRecord fullRecord() {
    Session session;
    session.id = "s";
    session.agent = AgentKind::kimi;
    session.state = SessionState::failed;
    session.cwd = "/home/ada/ünïcode 🙂";
    session.gitBranch = "main";
    session.itermSessionID = "w0t0p0:1";
    session.termProgram = "kitty";
    session.hostBundleID = "net.kovidgoyal.kitty";
    session.lastPrompt = "Say \"hi\"\n";
    session.summary = "";
    session.hostAppName = "kitty";
    session.pane = {"%1", "/tmp/tmux,1,0", {}, "7", {}, {}, "unix:@k", {}};
    session.ttyName = "/dev/pts/3";
    return CompletedRecord::of(session, finish);
}

TEST(CompletedHistoryFormat, WritesEachFieldUnderItsNameAndReadsItBack) {
    const json expected = json::parse(R"([{"id":"/home/ada/ünïcode 🙂","name":"ünïcode 🙂",
        "cwd":"/home/ada/ünïcode 🙂","gitBranch":"main","itermSessionID":"w0t0p0:1",
        "termProgram":"kitty","hostBundleID":"net.kovidgoyal.kitty","finishedAt":730857601.5,
        "lastPrompt":"Say \"hi\"\n","summary":"","agent":"kimi","hostAppName":"kitty","failed":true,
        "pane":{"tmux":"%1","tmuxServer":"/tmp/tmux,1,0","kitty":"7",
        "kittyListenOn":"unix:@k"},"ttyName":"/dev/pts/3"},
        {"id":"s","name":"","cwd":"","finishedAt":-1161302398.5}])");
    CompletedRecord least;
    least.id = "s";
    least.finishedAt = finish - std::chrono::hours(24 * 365 * 60);
    const QList<CompletedRecord> history{fullRecord(), least};
    const QByteArray written = CompletedHistoryFormat::write(history);
    EXPECT_EQ(json::parse(written.toStdString()), expected);
    EXPECT_EQ(CompletedHistoryFormat::parse(written), history);

    // A date doesn't drift from save to save, even if it has more digits than ours have.
    for (const char *date : {"797953274.48131216", "-1.25", "12"}) {
        const auto read = onlyRecord(stored({{"finishedAt", json::parse(date)}}));
        const json again = json::parse(CompletedHistoryFormat::write({read}).toStdString());
        EXPECT_EQ(again[0]["finishedAt"], json::parse(date));
    }
}

TEST(CompletedHistoryFormat, ForgivesAllButWhatARecordIsMadeOf) {
    EXPECT_EQ(onlyRecord(stored()).agent, std::nullopt);
    for (const char *field : {"gitBranch", "agent", "failed", "pane", "unheardOf"}) {
        for (const json &wrong : {json(7), json(nullptr)}) {
            EXPECT_EQ(onlyRecord(stored({{field, wrong}})), onlyRecord(stored())) << field << wrong;
        }
    }
    for (const char *field : {"agent", "failed", "pane"}) {
        EXPECT_EQ(onlyRecord(stored({{field, "no such"}})), onlyRecord(stored())) << field;
    }
    EXPECT_EQ(onlyRecord(stored({{"pane", {{"tmux", "%1"}, {"tmuxServer", 5}}}})).pane,
              std::nullopt);
    EXPECT_EQ(onlyRecord(stored({{"pane", {{"zellij", "z"}, {"orca", nullptr}}}})).pane->zellij,
              "z");

    for (const char *field : {"id", "name", "cwd", "finishedAt"}) {
        for (const json &wrong : {json(nullptr), json(true)}) {
            json history = stored();
            history.push_back(history[0]);
            history[1][field] = wrong;
            EXPECT_EQ(CompletedHistoryFormat::parse(bytes(history)), std::nullopt) << field;
            history[1].erase(field);
            EXPECT_EQ(CompletedHistoryFormat::parse(bytes(history)), std::nullopt) << field;
        }
    }
    for (const char *text : {"", "{}", "[1]", "[{}", "[\"\xff\"]"}) {
        EXPECT_EQ(CompletedHistoryFormat::parse(text), std::nullopt) << text;
    }
}

TEST(CompletedHistoryFormat, KeepsADateThatNobodyCanReckonWithWithinReach) {
    const Date now = std::chrono::system_clock::now();
    for (const double date : {1e300, -1e300, 1e17}) {
        const Date read = onlyRecord(stored({{"finishedAt", date}})).finishedAt;
        EXPECT_EQ(now + (read - now), read);
        EXPECT_EQ(read > now, date > 0);
    }
}

class CompletedHistoryTest : public testing::Test {
protected:
    /// What a program that starts now has to show.
    QList<CompletedRecord> keptBy(Defaults &defaults) const {
        defaults.flush();
        Defaults later{home.path("defaults"), "test"};
        return CompletedHistory(later).records();
    }

    static constexpr const char *place = "completedHistory";

    TemporaryHome home;
    Defaults values{home.path("defaults"), "test"};
};

TEST_F(CompletedHistoryTest, OutlivesTheProgram) {
    CompletedHistory history(values);
    EXPECT_TRUE(history.records().isEmpty());
    history.add(fullRecord());
    EXPECT_EQ(keptBy(values), QList<CompletedRecord>{fullRecord()});
    EXPECT_FALSE(history.summarize("unknown", finish, "x"));
    EXPECT_FALSE(history.summarize(fullRecord().id, finish - std::chrono::seconds(1), "x"));
    EXPECT_TRUE(history.summarize(fullRecord().id, finish, "Done."));
    EXPECT_FALSE(history.summarize(fullRecord().id, finish, "Done."));
    EXPECT_EQ(keptBy(values).value(0).summary, "Done.");
    history.rename("/elsewhere", "Other");
    history.rename(fullRecord().cwd, "Mine");
    EXPECT_EQ(keptBy(values).value(0).name, "Mine");
}

TEST_F(CompletedHistoryTest, LeavesWhatItCannotReadUntilItHasSomethingToSave) {
    for (const QByteArray &broken :
         {bytes(json::array({stored()[0], {{"id", "/q"}}})), QByteArray("\xff\x00nonsense", 10)}) {
        values.setValue(place, broken);
        CompletedHistory history(values);
        EXPECT_TRUE(history.records().isEmpty());
        EXPECT_EQ(values.value(place).toByteArray(), broken);
        history.add(fullRecord());
        EXPECT_EQ(keptBy(values), QList<CompletedRecord>{fullRecord()});
    }
    // The right bytes under the wrong type.
    values.setValue(place, QString::fromUtf8(bytes(stored())));
    EXPECT_TRUE(CompletedHistory(values).records().isEmpty());
}

TEST_F(CompletedHistoryTest, KeepsTheTenLatest) {
    json longer = json::array();
    for (int record = 0; record < 12; ++record) {
        longer.push_back(stored({{"id", std::to_string(record)}})[0]);
    }
    values.setValue(place, bytes(longer));
    CompletedHistory history(values);
    EXPECT_EQ(history.records().size(), 12);
    history.add(fullRecord());
    history.add(fullRecord()); // adding it again displaces no other record
    EXPECT_EQ(history.records().size(), 10);
    EXPECT_EQ(history.records().first(), fullRecord());
    EXPECT_EQ(history.records().last().id, "8");
}

} // namespace
} // namespace morvane
