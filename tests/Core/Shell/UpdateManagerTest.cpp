#include "Core/Shell/UpdateManager.h"

#include "Core/Shell/InstallPing.h"
#include "Support/FakeHttpsClient.h"
#include "Support/FakeTools.h"
#include "Support/Printing.h"
#include "Support/UpdateWorld.h"

namespace morvane {
namespace {

using Phase = UpdateManager::Phase;

const QUrl feedURL("https://updates.example/debian/feed.json");
const QByteArray key(32, 'k');

QByteArray feedOf(const QByteArray &version) {
    return UpdateWorld::feed("\"version\":\"" + version + "\",");
}

class UpdateManagerTest : public testing::Test, protected UpdateWorld {
protected:
    UpdateManagerTest() {
        QObject::connect(&updates, &UpdateManager::updateFound, &updates, [this] { ++found; });
    }

    void answer(const QByteArray &body) { https.answer(HttpsAnswer{200, {}, body}); }

    Phase phaseAfter(const QByteArray &body) {
        updates.checkForUpdates();
        answer(body);
        return updates.phase();
    }

    FakeHttpsClient https;
    FakeTools tools;
    UpdateManager updates{defaults, means(https, tools), {feedURL, key, "1.0"}};
    int found = 0;
};

TEST_F(UpdateManagerTest, SaysWhatABuildLacksAndAsksNobody) {
    for (const UpdateSource &source :
         {UpdateSource{feedURL, std::nullopt}, UpdateSource{std::nullopt, key}}) {
        UpdateManager lacking(defaults, means(https, tools), source);
        lacking.start();
        EXPECT_TRUE(lacking.unavailableReason());
        EXPECT_FALSE(lacking.isConfigured() || lacking.canCheck());
        lacking.checkForUpdates();
        pass(Seconds(200'000));
    }
    EXPECT_FALSE(updates.canCheck());
    EXPECT_TRUE(https.requests.empty());
}

TEST_F(UpdateManagerTest, AsksOnceADayUnlessItIsNotTo) {
    updates.start();
    pass(Seconds(599));
    EXPECT_TRUE(https.requests.empty());
    pass(Seconds(1));
    ASSERT_EQ(https.requests.size(), 1U);
    const HttpsRequest &request = https.requests.front().request;
    EXPECT_EQ(request.url, feedURL);
    EXPECT_FALSE(request.body);
    EXPECT_EQ(request.headers.front().second, "Morvane/" + BuildInfo::version().toUtf8());

    // Without an answer there was no check, and nobody hears of it.
    pass(Seconds(30));
    EXPECT_EQ(updates.phase(), Phase::idle);
    EXPECT_FALSE(updates.lastUpdateCheckDate());
    pass(Seconds(3570));
    ASSERT_EQ(https.requests.size(), 2U);
    answer(feedOf("1.0"));
    EXPECT_EQ(updates.lastUpdateCheckDate(), scheduler.now());
    pass(Seconds(23 * 3600));
    EXPECT_EQ(https.requests.size(), 2U);
    pass(Seconds(3600));
    ASSERT_EQ(https.requests.size(), 3U);

    updates.setAutomaticChecks(false);
    answer(feed());
    pass(Seconds(200'000));
    EXPECT_EQ(https.requests.size(), 3U);
    EXPECT_EQ(found, 0);
}

TEST_F(UpdateManagerTest, OffersOnlyWhatIsNewer) {
    updates.start();
    for (const char *version : {"1.0", "1", "1.0.0", "0.10", "0.0.99"}) {
        EXPECT_EQ(phaseAfter(feedOf(version)), Phase::upToDate) << version;
    }
    for (const char *version : {"1.0.1", "1.10", "2"}) {
        EXPECT_EQ(phaseAfter(feedOf(version)), Phase::offered) << version;
    }
    EXPECT_EQ(updates.offer().package, QUrl("https://updates.example/debian/morvane.deb"));

    // What was not wanted is not brought up again.
    updates.skip();
    EXPECT_EQ(updates.phase(), Phase::idle);
    pass(Seconds(87'000));
    answer(feedOf("2"));
    EXPECT_EQ(found, 0);
    EXPECT_EQ(phaseAfter(feedOf("2")), Phase::offered);
    updates.dismiss();
    pass(Seconds(86'400));
    answer(feedOf("2.1"));
    EXPECT_EQ(found, 1);
    EXPECT_EQ(updates.phase(), Phase::offered);
}

TEST_F(UpdateManagerTest, MakesNothingOfAFeedThatIsNoFriends) {
    updates.start();
    QByteArrayList spoilt = QByteArray(R"(
        "version":2 | "version":"" | "version":"9.9-1" | "version":"9\n" | "version":"../../9" |
        "version":"9.\u202e1" | "version":null | "version":"9.9.9.9.9" | "version":"9999999999" |
        "package":"" | "package":[] | "package":"http://updates.example/m.deb" |
        "package":"https://elsewhere.example/m.deb" | "package":"//elsewhere.example/m.deb" |
        "package":"https://updates.example:444/m.deb" | "package":"file:///etc/shadow" |
        "package":"https://me:pw@updates.example/m.deb" | "size":0 | "size":-1 | "size":1e3 |
        "size":"3" | "size":67108865 | "size":18446744073709551615 | "signature":"" |
        "signature":"c2hvcnQ=" | "signature":null | "notes":{} | [ | }{)")
                                .split('|');
    spoilt << R"("notes":")" + QByteArray(70'000, 'n') + '"'
           << "\"notes\":" + QByteArray(5'000, '[')
           << R"("signature":")" + QByteArray(88, '!') + '"';
    for (const QByteArray &member : spoilt) {
        EXPECT_EQ(phaseAfter(feed(member + ',')), Phase::failed) << member.left(80).constData();
        EXPECT_EQ(updates.failure(),
                  "Morvane can't make sense of what its server says about updates.");
    }
    updates.checkForUpdates();
    https.answer(HttpsAnswer{404, {}, feed()});
    EXPECT_EQ(updates.failure(), "Morvane's server answers with an error (404).");
    updates.checkForUpdates();
    https.answer(std::nullopt);
    EXPECT_EQ(updates.failure(), "Morvane's server can't be reached.");

    // The server may choose any path: the file that is kept here has a name of ours.
    EXPECT_EQ(phaseAfter(feed(R"("package":"../../..//etc/passwd",)")), Phase::offered);
    phaseAfter(feed(R"("notes":"<b>a</b>\r\n\u001b[2J\u202Egnp.exe\n)" +
                    QByteArray("\\n").repeated(300) + "z\","));
    EXPECT_EQ(updates.offer().notes, "<b>a</b>\n⟨U+001B⟩[2J⟨U+202E⟩gnp.exe");
    EXPECT_TRUE(tools.commands.isEmpty());
}

TEST_F(UpdateManagerTest, CountsAnInstallationOnceAndOnlyIfThatIsWanted) {
    const QUrl counter("https://updates.example/api/install");
    const auto send = [&](const std::optional<QUrl> &url) {
        return InstallPing::sendIfNeeded(settings, https, scheduler, url);
    };
    settings.setInstallPingEnabled(false);
    Task ping = send(counter);
    settings.setInstallPingEnabled(true);
    ping = send(std::nullopt);
    EXPECT_TRUE(https.requests.empty());

    ping = send(counter);
    https.answer(HttpsAnswer{302, {}, {}});
    EXPECT_FALSE(settings.installPingSent());
    ping = send(counter);
    const HttpsRequest request = https.requests.back().request;
    EXPECT_EQ(request.url, counter);
    EXPECT_EQ(request.body, R"({"build":")" + BuildInfo::build().toUtf8() + R"(","version":")" +
                                BuildInfo::version().toUtf8() + R"("})");
    https.answer(HttpsAnswer{204, {}, {}});
    EXPECT_TRUE(settings.installPingSent());
    ping = send(counter);
    EXPECT_EQ(https.requests.size(), 2u);
}

} // namespace
} // namespace morvane
