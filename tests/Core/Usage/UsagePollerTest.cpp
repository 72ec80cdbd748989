#include "Core/Usage/UsagePoller.h"

#include "Core/Usage/UsageFakes.h"
#include "Support/CoreWorld.h"
#include "Support/Printing.h"

#include <QDirIterator>

namespace morvane {
namespace {

using enum AgentKind;

const QString credentials = ".claude/.credentials.json";
const QByteArray token = "sk-ant-oat01-hush";

const QString locked = "keychain locked — Morvane won't ask for your password";

HttpsAnswer answer(int status, const QByteArray &body = {}, const QByteArray &retryAfter = {}) {
    return {status, {{"retry-after", retryAfter}}, body};
}

QByteArray body(double session, double weekly = 10) {
    return R"({"five_hour":{"utilization":)" + QByteArray::number(session) +
           R"(},"seven_day":{"utilization":)" + QByteArray::number(weekly) + "}}";
}

QByteArray statusLine(const QByteArray &windows) {
    return R"({"rate_limits":{)" + windows + "}}";
}

class UsagePollerTest : public testing::Test, protected CoreWorld {
protected:
    UsagePollerTest() {
        home.write(credentials, R"({"claudeAiOauth":{"accessToken":")" + token + R"("}})");
        QObject::connect(&poller, &UsagePoller::milestoneEvents, &poller,
                         [this](const UsageMilestone &milestone) { told << milestone.percent(); });
    }

    void start() {
        poller.setEnabled(true);
        pass(Seconds(0));
    }

    /// Answers the poll that is under way.
    void reply(const std::optional<HttpsAnswer> &answer) { https.answer(answer); }

    std::size_t requests() const { return https.requests.size(); }

    /// The seconds until the next request leaves, in steps of ten.
    double wait() {
        const std::size_t before = requests();
        double seconds = 0;
        for (; requests() == before && seconds < 100'000; seconds += 10) {
            pass(Seconds(10));
        }
        return seconds;
    }

    QString reason() const { return poller.unavailableReason().value_or(QString()); }

    int sessionPercent() const {
        return poller.usage() && poller.usage()->session
                   ? static_cast<int>(poller.usage()->session->utilization * 100 + 0.5)
                   : -1;
    }

    FakeSecretStore secrets;
    FakeHttpsClient https;
    FakeDialogue dialogue;
    const UsagePorts ports{scheduler, background, secrets, https, dialogue};
    UsagePoller poller{settings, ports, "1.2", [this] { return isWorking; }};
    bool isWorking = true;
    QList<int> told;
};

TEST_F(UsagePollerTest, AsksEverMoreSeldomAndKeepsTheFigures) {
    start();
    EXPECT_EQ(https.requests.back().request.url.path(), "/api/oauth/usage");
    EXPECT_EQ(https.requests.back().request.url.scheme(), "https");
    reply(answer(200, body(85)));
    EXPECT_EQ(wait(), 120);
    reply(answer(200, body(42)));
    wait();
    const std::pair<std::optional<HttpsAnswer>, QString> failures[] = {
        {std::nullopt, "network error"},
        {answer(500), "usage endpoint returned 500"},
        {answer(302), "usage endpoint returned 302"},
        {answer(200, "<html>"), "unexpected usage format"},
        {answer(0), "usage endpoint returned 0"}};
    QList<double> waits;
    for (const auto &[answer, text] : failures) {
        reply(answer);
        EXPECT_EQ(reason(), text);
        EXPECT_EQ(sessionPercent(), 42);
        waits << wait();
    }
    EXPECT_EQ(waits, QList<double>({600, 1200, 2400, 4800, 4800}));
    reply(answer(200, body(1)));
    EXPECT_EQ(reason(), "");
    EXPECT_EQ(wait(), 300);
    // An answer that doesn't come counts as one that failed.
    pass(Seconds(15));
    EXPECT_EQ(reason(), "network error");
    reply(answer(200, body(2)));
    EXPECT_EQ(sessionPercent(), 1);
}

TEST_F(UsagePollerTest, LeavesAServerAloneThatAsksForIt) {
    start();
    const auto waitAfter = [this](const QByteArray &retryAfter) {
        poller.refreshNow(); // which starts the intervals anew
        reply(answer(429, {}, retryAfter));
        EXPECT_EQ(reason(), "rate limited — showing cached figures");
        return wait();
    };
    EXPECT_EQ(waitAfter(" 120 "), 600);
    EXPECT_EQ(waitAfter("3000"), 3000);
    EXPECT_EQ(waitAfter("999999"), 86'400);
    EXPECT_EQ(waitAfter("nan"), 600);
    // By the clock, the timer fires too early.
    reply(answer(429, {}, "3000"));
    scheduler.setClock(Seconds(-5));
    EXPECT_EQ(wait(), 3010);
    const Date now(std::chrono::seconds(1'700'000'000));
    EXPECT_EQ(UsageEndpoint::retryAfter("Tue, 14 Nov 2023 22:23:20 GMT", now).count(), 600);
}

TEST_F(UsagePollerTest, ReadsARefusedTokenAnewAndDropsTheFiguresWithTheLast) {
    start();
    reply(answer(200, body(42)));
    wait();
    home.write(credentials, R"({"claudeAiOauth":{"accessToken":"second"}})");
    reply(answer(500));
    wait();
    EXPECT_EQ(https.requests.back().request.headers.front().second, "Bearer " + token);
    reply(answer(401));
    wait();
    EXPECT_EQ(https.requests.back().request.headers.front().second, "Bearer second");
    EXPECT_EQ(sessionPercent(), 42);
    const std::size_t before = requests();
    reply(answer(401));
    home.write(credentials, R"({"claudeAiOauth":{"accessToken":"old","expiresAt":1000}})");
    pass(Seconds(2400));
    EXPECT_EQ(reason(), "token expired — run Claude Code to refresh");
    EXPECT_FALSE(poller.usage());
    QFile::remove(home.path(credentials));
    poller.setEnabled(false); // forgets the old one
    start();
    EXPECT_EQ(reason(), "no Claude Code credentials");
    EXPECT_EQ(requests(), before);
}

TEST_F(UsagePollerTest, StopsAtALockedKeychainUntilThePersonTriesAgain) {
    QFile::remove(home.path(credentials));
    secrets.answer = SecretStore::Withheld{};
    start();
    EXPECT_EQ(reason(), locked);
    EXPECT_TRUE(poller.keychainBlocked());
    pass(Seconds(1e6));
    EXPECT_EQ(secrets.asked.size(), 1);
    // The status line still brings figures, but the keychain stays locked.
    poller.ingestLive(statusLine(R"("five_hour":{"used_percentage":5})"), claude);
    EXPECT_EQ(sessionPercent(), 5);
    EXPECT_EQ(reason(), locked);

    secrets.answer = QByteArray(R"({"claudeAiOauth":{"accessToken":"unlocked"}})");
    poller.refreshNow();
    pass(Seconds(0));
    EXPECT_EQ(reason(), locked);
    EXPECT_EQ(secrets.asked.size(), 1);
    poller.retryKeychainAccess();
    pass(Seconds(0));
    EXPECT_EQ(secrets.asked.size(), 2);
    reply(answer(200, body(42)));
    EXPECT_EQ(reason(), "");
    EXPECT_FALSE(poller.keychainBlocked());
}

TEST_F(UsagePollerTest, AsksNothingWhileStatusLinesBringTheFigures) {
    start();
    reply(answer(200, R"({"five_hour":{"utilization":1},"seven_day":{"utilization":2},
                          "seven_day_opus":{"utilization":3}})"));
    for (int minute = 0; minute < 30; ++minute) {
        poller.ingestLive(statusLine(R"("five_hour":{"used_percentage":42})"), claude);
        pass(Seconds(60));
    }
    EXPECT_EQ(requests(), 1U);
    EXPECT_EQ(sessionPercent(), 42);
    EXPECT_FALSE(poller.usage()->weekly);
    EXPECT_TRUE(poller.usage()->fable);
    // A status line without limits, or of another agent, changes nothing.
    const auto before = poller.usage();
    poller.ingestLive(R"({"rate_limits":{}})", claude);
    poller.ingestLive(statusLine(R"("five_hour":{"used_percentage":1})"), codex);
    // Nor do the old figures that a session long at rest still shows.
    const auto now = static_cast<qint64>(Seconds(scheduler.now().time_since_epoch()).count());
    const QByteArray over =
        R"(:{"used_percentage":99,"resets_at":)" + QByteArray::number(now) + '}';
    for (const char *window : {R"("five_hour")", R"("seven_day")"}) {
        poller.ingestLive(statusLine(window + over), claude);
    }
    EXPECT_EQ(poller.usage(), before);
    pass(Seconds(300));
    EXPECT_EQ(requests(), 2U);
}

TEST_F(UsagePollerTest, AStatusLineTellsNoLessOfAWindowThanIsKnown) {
    start();
    const auto tell = [this](int session, int weekly, Seconds resetsIn) {
        const Seconds reset = scheduler.now().time_since_epoch() + resetsIn;
        const QByteArray at = ",\"resets_at\":" + QByteArray::number(qint64(reset.count())) + '}';
        poller.ingestLive(
            statusLine(R"("five_hour":{"used_percentage":)" + QByteArray::number(session) + at +
                       R"(,"seven_day":{"used_percentage":)" + QByteArray::number(weekly) + at),
            claude);
    };
    tell(86, 41, Seconds(1000));
    const auto before = poller.usage();
    pass(Seconds(10));
    // Each names the same reset a moment before or after it.
    tell(20, 41, Seconds(988));
    tell(86, 22, Seconds(991));
    EXPECT_EQ(poller.usage(), before);
    tell(86, 41, Seconds(991));
    EXPECT_EQ(poller.usage()->fetchedAt, scheduler.now());
    EXPECT_EQ(poller.usage()->session, before->session);
    poller.ingestLive(statusLine(R"("seven_day":{"used_percentage":41})"), claude);
    tell(86, 41, Seconds(989));
    EXPECT_EQ(told, QList<int>({85}));
    // A window that has begun anew may show less, and so may the endpoint.
    tell(2, 41, Seconds(2000));
    EXPECT_EQ(sessionPercent(), 2);
    reply(answer(200, body(1)));
    EXPECT_EQ(sessionPercent(), 1);
}

TEST_F(UsagePollerTest, APersonMayAskAtAnyTime) {
    start();
    reply(answer(429, {}, "3000"));
    poller.ingestLive(statusLine(R"("five_hour":{"used_percentage":42})"), claude);
    EXPECT_EQ(reason(), "");
    poller.refreshNow();
    pass(Seconds(0));
    ASSERT_EQ(requests(), 2U);
    reply(std::nullopt);
    pass(Seconds(2900));
    EXPECT_EQ(requests(), 2U);
}

TEST_F(UsagePollerTest, TurningItOffEndsAllAtOnce) {
    start();
    reply(answer(200, body(96)));
    poller.refreshNow();
    pass(Seconds(0));
    ASSERT_TRUE(poller.activeMilestone());
    settings.setUsageEnabled(false);
    poller.setEnabled(false);
    reply(answer(200, body(42)));
    poller.refreshNow();
    pass(Seconds(1e5));
    EXPECT_FALSE(poller.usage() || poller.codexUsage() || poller.activeMilestone());
    EXPECT_EQ(reason(), "turned off in Settings");
    EXPECT_EQ(poller.codexUnavailableReason(), "turned off in Settings");
    EXPECT_EQ(requests(), 2U);
}

TEST_F(UsagePollerTest, RemembersWhenTheWeekBeganAnew) {
    const auto take = [this](const QByteArray &percent) {
        poller.ingestLive(statusLine(R"("seven_day":{"used_percentage":)" + percent + "}"), claude);
    };
    take("30");
    take("21");
    EXPECT_FALSE(defaults.contains("lastWeeklyResetAt"));
    take("2");
    EXPECT_EQ(defaults.value("lastWeeklyResetAt").toDouble(),
              Seconds(scheduler.now().time_since_epoch()).count());
}

TEST_F(UsagePollerTest, ShowsAMilestoneWhileASessionWorks) {
    isWorking = false;
    start();
    reply(answer(200, body(92)));
    EXPECT_TRUE(told.isEmpty());
    isWorking = true;
    poller.refreshMilestoneEligibility();
    EXPECT_EQ(told, QList<int>({90}));
    pass(Seconds(4));
    poller.ingestLive(statusLine(R"("five_hour":{"used_percentage":95})"), claude);
    EXPECT_EQ(told, QList<int>({90, 95}));
    pass(Seconds(5.9));
    EXPECT_EQ(poller.activeMilestone(), (UsageMilestone{UsageWindowKind::session, 0.95}));
    poller.ingestLive(statusLine(R"("seven_day":{"used_percentage":86})"), claude);
    EXPECT_EQ(poller.activeMilestone(), (UsageMilestone{UsageWindowKind::weekly, 0.85}));
    isWorking = false;
    poller.refreshMilestoneEligibility();
    EXPECT_FALSE(poller.activeMilestone());
}

TEST_F(UsagePollerTest, AsksCodexOneAtATimeAndKeepsItsFigures) {
    home.writeProgram(".local/bin/codex");
    home.write(".codex/auth.json");
    dialogue.says = {"{\"id\":2,\"result\":{\"rateLimits\":{\"primary\":{\"usedPercent\":90}}}}\n"};
    QFile::remove(home.path(credentials));
    start();
    ASSERT_TRUE(poller.codexUsage());
    dialogue.says.clear();
    scheduler.advance(Seconds(120));
    poller.refreshNow();
    scheduler.advance(Seconds(0));
    pass(Seconds(0));
    EXPECT_EQ(dialogue.commands.size(), 2U);
    EXPECT_EQ(poller.codexUnavailableReason(), "Codex rate limits unavailable");
    EXPECT_TRUE(poller.codexUsage());
    QList<std::size_t> starts;
    for (int round = 0; round < 5; ++round) {
        pass(Seconds(240));
        starts << dialogue.commands.size();
    }
    EXPECT_EQ(starts, QList<std::size_t>({3, 3, 4, 4, 4}));
}

TEST_F(UsagePollerTest, TellsTheTokenToNobodyButTheEndpoint) {
    home.writeProgram(".local/bin/codex");
    home.write(".codex/auth.json");
    start();
    reply(answer(401, token));
    wait();
    reply(answer(200, body(42)));
    defaults.flush();
    QDirIterator files(home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = QDir(home.path()).relativeFilePath(files.next());
        EXPECT_EQ(home.read(path).contains(token), path == credentials) << path.toStdString();
    }
    ASSERT_FALSE(dialogue.commands.empty());
    const Tools::Command &command = dialogue.commands.front();
    const QStringList said = command.arguments + command.environment.toStringList() +
                             QStringList{reason(), poller.codexUnavailableReason().value_or("")};
    EXPECT_FALSE(said.join(' ').contains(token));
}

} // namespace
} // namespace morvane
