#include "Core/Usage/UsageEndpoint.h"
#include "Platform/Linux/LoadedHttpsClient.h"
#include "Platform/LoopbackServer.h"
#include "Support/ManualPool.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

class NetworkHttpsClientTest : public testing::Test {
protected:
    /// Sends a request with the token, and yields the answer; none where the request failed.
    std::optional<HttpsAnswer> ask(const QTcpServer &server, const char *scheme = "http") {
        UsageEndpoint endpoint(*client, scheduler, urlOf(server, "/api/oauth/usage", scheme));
        QList<std::optional<HttpsAnswer>> answers;
        endpoint.ask("token", [&](const auto &answer) { answers.append(answer); });
        EXPECT_TRUE(becomesTrue([&] {
            background.runAll();
            scheduler.runPosted();
            return !answers.isEmpty();
        }));
        return answers.value(0);
    }

    /// The same with a server that gives this answer.
    std::optional<HttpsAnswer> askFor(const QByteArray &answer, bool thenCloses = false) {
        QTcpServer server;
        asked.clear();
        serve(
            server, asked, [answer](const QByteArray &) { return answer; }, thenCloses);
        return ask(server);
    }

    TemporaryHome home;
    ManualScheduler scheduler;
    ManualPool background;
    std::optional<LoadedHttpsClient> client{std::in_place, NETWORK_LIBRARY, scheduler, background};
    QByteArray asked;
};

TEST_F(NetworkHttpsClientTest, SendsWhatItIsGivenAndBringsWhatComesBack) {
    const auto answer = askFor(http("429 Slow", "later", "RETRY-after: 7\r\nSet-Cookie: a=b\r\n"));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 429);
    EXPECT_EQ(answer->body, "later");
    EXPECT_EQ(answer->header("Retry-After"), "7");
    EXPECT_TRUE(asked.startsWith("GET /api/oauth/usage HTTP/1.1\r\n"));
    // Newer versions of Qt write names in small letters.
    for (const char *line : {"authorization: bearer token", "anthropic-beta: oauth-2025-04-20",
                             "user-agent: claude-code/2.1.0"}) {
        EXPECT_EQ(asked.toLower().count(QByteArray("\r\n") + line + "\r\n"), 1) << line;
    }
    // The second request is like the first: no cookie was kept.
    const auto next = askFor(http("401 Unauthorized", "{}", "WWW-Authenticate: Basic\r\n"));
    ASSERT_TRUE(next);
    EXPECT_EQ(next->status, 401);
    EXPECT_FALSE(asked.toLower().contains("cookie"));
}

TEST_F(NetworkHttpsClientTest, TakesTheTokenToNoOtherServer) {
    QTcpServer other;
    QByteArray askedThere;
    serve(other, askedThere, [](const QByteArray &) { return http("200 OK", "{}"); });
    const QByteArray there = "://localhost:" + QByteArray::number(other.serverPort());
    for (const QByteArray &place : {"http" + there, "https" + there, QByteArray("/other")}) {
        const auto answer = askFor(http("308 There", "", "Location: " + place + "\r\n"));
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, 308);
        EXPECT_FALSE(asked.contains("/other"));
    }
    EXPECT_EQ(askedThere, "");
}

TEST_F(NetworkHttpsClientTest, TakesNoHalfAnswerAndNoEndlessOne) {
    EXPECT_FALSE(askFor("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"five_hour\"", true));
    EXPECT_FALSE(askFor("SSH-2.0-OpenSSH_9.2\r\n\r\n", true));
    const auto answer = askFor("HTTP/1.1 200 OK\r\n\r\n" + QByteArray(3'000'000, ' '));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->body.size(), 1'048'576);
}

TEST_F(NetworkHttpsClientTest, TrustsOnlyAServerThatTheMachineKnows) {
    if (!LoopbackCertificate::canBeMade()) {
        GTEST_SKIP() << "openssl is needed and not installed";
    }
    const LoopbackCertificate certificate(home);
    QSslServer server;
    certificate.giveTo(server);
    serve(server, asked, [](const QByteArray &) { return http("200 OK", "{}"); });

    EXPECT_FALSE(ask(server, "https"));
    EXPECT_EQ(asked, "");
    certificate.trust();
    // The first client still uses what it has kept of the server.
    client.emplace(NETWORK_LIBRARY, scheduler, background);
    EXPECT_TRUE(ask(server, "https"));
    EXPECT_TRUE(asked.contains("Bearer token"));
}

TEST_F(NetworkHttpsClientTest, GoesToEachServerByTheProxyThatTheDesktopHasForIt) {
    QTcpServer server;
    QTcpServer proxy;
    QByteArray askedOfProxy;
    const auto answer = [](const QByteArray &) { return http("200 OK", "{}"); };
    serve(server, asked, answer);
    serve(proxy, askedOfProxy, answer);
    home.set("http_proxy", urlOf(proxy, "/", "http").toString());
    home.set("no_proxy", "127.0.0.1");
    int answers = 0;
    const auto count = [&](const auto &answered) { answers += answered ? 1 : 0; };
    const Task direct = client->send({urlOf(server, "/ours", "http"), {}, "words\r\n\r\n"}, count);
    const Task indirect = client->send({QUrl("http://elsewhere.invalid/"), {}}, count);
    EXPECT_TRUE(becomesTrue([&] {
        background.runAll();
        scheduler.runPosted();
        return answers == 2;
    }));
    EXPECT_TRUE(asked.startsWith("POST /ours "));
    EXPECT_TRUE(askedOfProxy.startsWith("GET http://elsewhere.invalid/ "));
    EXPECT_FALSE(askedOfProxy.contains("words"));
}

/// As after an upgrade that has replaced the library, or removed it.
TEST_F(NetworkHttpsClientTest, HasNoAnswerWithoutTheLibraryOfItsBuild) {
    for (const char *library : {"/nowhere/network.so", "libc.so.6"}) {
        client.emplace(library, scheduler, background);
        EXPECT_EQ(askFor(http("200 OK", "{}")), std::nullopt) << library;
        EXPECT_EQ(asked, "");
    }
}

} // namespace
} // namespace morvane
