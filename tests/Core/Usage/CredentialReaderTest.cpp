#include "Core/Usage/CredentialReader.h"

#include "Core/Usage/UsageFakes.h"
#include "Support/CoreWorld.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

const QString file = ".claude/.credentials.json";

class CredentialReaderTest : public testing::Test, protected CoreWorld {
protected:
    QByteArray json(const QByteArray &token, std::optional<Seconds> left = {}) const {
        const Seconds expiry =
            left ? Seconds(scheduler.now().time_since_epoch()) + *left : Seconds(0);
        return R"({"claudeAiOauth":{"accessToken":")" + token + R"(","expiresAt":)" +
               QByteArray::number(expiry.count() * 1000, 'f', 0) + "}}";
    }

    /// What comes of a call: the token, or why there is none.
    QByteArray read() {
        QByteArray result = "nothing";
        reader.read([&](const CredentialReader::Lookup &lookup) {
            const auto *credential = std::get_if<Credential>(&lookup);
            result = credential ? credential->accessToken
                     : std::holds_alternative<CredentialReader::Missing>(lookup) ? "missing"
                                                                                 : "blocked";
        });
        reads = background.waiting();
        pass(Seconds(0));
        return result;
    }

    FakeSecretStore store;
    CredentialReader reader{store, scheduler, background};
    std::size_t reads = 0; ///< that the last call began
};

TEST_F(CredentialReaderTest, FindsTheFileBeforeTheSecretStore) {
    store.answer = json("of-store");
    home.write(file, json("of-file"));
    EXPECT_EQ(read(), "of-file");
    EXPECT_TRUE(store.asked.isEmpty());
    reader.forget();
    for (const QByteArray &ugly :
         {QByteArray("{"), json(""), QByteArray(R"({"claudeAiOauth":{"accessToken":7}})")}) {
        home.write(file, ugly);
        EXPECT_EQ(read(), "of-store") << ugly.constData();
        reader.forget();
    }
    EXPECT_EQ(store.asked.first(), "Claude Code-credentials 2.5");
    store.answer = QByteArray("not JSON");
    EXPECT_EQ(read(), "missing");
    store.answer = SecretStore::Missing{};
    EXPECT_EQ(read(), "missing");
}

TEST_F(CredentialReaderTest, ReadsAgainWhenTheTokenEndsWithinTwoMinutes) {
    home.write(file, json("first", Seconds(240)));
    EXPECT_EQ(read(), "first");
    scheduler.advance(Seconds(119));
    EXPECT_EQ(read(), "first");
    EXPECT_EQ(reads, 0U);
    scheduler.advance(Seconds(2));
    home.write(file, json("second", Seconds(-1)));
    EXPECT_EQ(read(), "second");
    EXPECT_EQ(reads, 1U);
    QFile::remove(home.path(file));
    EXPECT_EQ(read(), "second"); // the poller notices that it has expired
}

TEST_F(CredentialReaderTest, ReadsOnceForAllWhoAskMeanwhile) {
    store.answer = json("token");
    int answers = 0;
    for (int call = 0; call < 3; ++call) {
        reader.read([&](const CredentialReader::Lookup &) { ++answers; });
    }
    pass(Seconds(0));
    EXPECT_EQ(answers, 3);
    scheduler.advance(Seconds(1e7));
    EXPECT_EQ(read(), "token"); // a token without an expiry date
    EXPECT_EQ(store.asked.size(), 1);
}

TEST_F(CredentialReaderTest, AsksAStoreThatWithholdsOnceForEachTimeThePersonAllowsIt) {
    store.answer = SecretStore::Withheld{};
    EXPECT_EQ(read(), "blocked");
    EXPECT_EQ(read(), "blocked");
    EXPECT_EQ(store.asked.size(), 1);
    reader.unblock();
    EXPECT_EQ(read(), "blocked");
    EXPECT_EQ(read(), "blocked");
    EXPECT_EQ(store.asked.size(), 2);
    home.write(file, json("of-file", Seconds(1)));
    EXPECT_EQ(read(), "of-file");
    QFile::remove(home.path(file));
    scheduler.advance(Seconds(2));
    EXPECT_EQ(read(), "of-file"); // even an expired one is better than none
    EXPECT_EQ(store.asked.size(), 2);
}

} // namespace
} // namespace morvane
