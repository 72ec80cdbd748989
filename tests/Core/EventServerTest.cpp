#include "Core/Defaults.h"
#include "Core/MorvaneSettings.h"
#include "Core/SessionStore.h"
#include "Support/ServerFixture.h"
#include "Support/TemporaryHome.h"

#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <dirent.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace morvane {
namespace {

using EventServerTest = ServerFixture;

constexpr const char *sessionStart = R"({"session_id":"s","cwd":"/home/ada/project"})";

/// A listening socket of somebody else's.
class TakenPort {
public:
    explicit TakenPort(std::uint16_t port) : m_descriptor(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *generic = reinterpret_cast<sockaddr *>(&address);
        m_listens = bind(m_descriptor, generic, size) == 0 && listen(m_descriptor, 1) == 0;
        getsockname(m_descriptor, generic, &size);
        m_port = ntohs(address.sin_port);
    }
    TakenPort(TakenPort &&other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)), m_port(other.m_port),
          m_listens(other.m_listens) {}
    ~TakenPort() {
        if (m_descriptor >= 0) {
            close(m_descriptor);
        }
    }

    std::uint16_t port() const { return m_port; }
    bool listens() const { return m_listens; }

private:
    int m_descriptor;
    std::uint16_t m_port = 0;
    bool m_listens = false;
};

std::size_t openDescriptors() {
    std::size_t count = 0;
    DIR *directory = opendir("/proc/self/fd");
    while (readdir(directory)) {
        ++count;
    }
    closedir(directory);
    return count;
}

TEST_F(EventServerTest, AnswersByTokenThenMethodAndPath) {
    struct Case {
        std::string request;
        std::string status;
    };
    const std::string head = " HTTP/1.1\r\nX-MORVANE-TOKEN: " + std::string(token) + "\r\n\r\n";
    const Case cases[] = {
        {eventRequest({}, sessionStart), "200 OK"},
        {"GET /event" + head, "404 Not Found"},
        {"post /event" + head, "404 Not Found"},
        {"POST /event?now" + head, "404 Not Found"},
        {"POST /" + head, "404 Not Found"},
        {"POST /usage" + head, "200 OK"},
        {"GET /event HTTP/1.1\r\n\r\n", "401 Unauthorized"},
        {httpPost("/event", {{"x-morvane-token", ""}}, "{}"), "401 Unauthorized"},
        {httpPost("/event", {{"x-morvane-token", "TOKEN-0123456788"}}, "{}"), "401 Unauthorized"},
        {httpPost("/usage", {{"x-morvane-token", "TOKEN"}}, "{}"), "401 Unauthorized"},
    };
    for (const Case &expected : cases) {
        EXPECT_EQ(httpExchange(port(), expected.request),
                  "HTTP/1.1 " + expected.status +
                      "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n")
            << expected.request;
    }
}

TEST_F(EventServerTest, HandsOverWhatTheHeadersTell) {
    const std::string request = eventRequest({{"x-morvane-agent", "gemini"},
                                              {"X-Hook-Event", "BeforeAgent"},
                                              {"x-iterm-session", "w0t0p0:ABC"},
                                              {"x-term-program", "kitty"},
                                              {"x-host-bundle", "net.kovidgoyal.kitty"},
                                              {"x-tty", "/dev/pts/3"},
                                              {"x-tmux-pane", " %1\t"},
                                              {"x-tmux-server", "/tmp/tmux,1,0"},
                                              {"x-wezterm-pane", "  "},
                                              {"x-kitty-window", "7"},
                                              {"x-zellij-session", "zed"},
                                              {"x-orca-terminal", "orc"}},
                                             R"({"session_id":"g","prompt":"hello"})");
    EXPECT_EQ(httpExchange(port(), request), okAnswer);
    scheduler.runPosted();
    ASSERT_EQ(events.size(), 1u);
    const HookEvent &event = events.front();
    EXPECT_EQ(event.agent, AgentKind::gemini);
    EXPECT_EQ(event.kind, CanonicalEvent::promptSubmit);
    EXPECT_EQ(event.itermSessionID, "w0t0p0:ABC");
    EXPECT_EQ(event.termProgram, "kitty");
    EXPECT_EQ(event.hostBundleID, "net.kovidgoyal.kitty");
    EXPECT_EQ(event.ttyName, "/dev/pts/3");
    EXPECT_EQ(event.pane, (PaneLocator{"%1", "/tmp/tmux,1,0", std::nullopt, "7", "zed", "orc"}));
    EXPECT_FALSE(event.decisionID);
}

TEST_F(EventServerTest, NeverTellsAnAgentOfAFault) {
    const std::vector<std::string> bodies{"",         "{",
                                          "[]",       "null",
                                          "\"text\"", R"({"session_id":""})",
                                          "true",     "12",
                                          "{}",       R"({"session_id":7})",
                                          "\xff\xfe", R"({"session_id":"s"} tail)"};
    for (const std::string &body : bodies) {
        const HttpHeaders headers{{"x-morvane-agent", "claude"},
                                  {"x-hook-event", "PermissionRequest"},
                                  {"x-morvane-decision", "1"}};
        EXPECT_EQ(httpExchange(port(), eventRequest(headers, body)), okAnswer) << body;
    }
    EXPECT_EQ(httpExchange(port(), eventRequest({{"x-hook-event", "Unheard"}}, sessionStart)),
              okAnswer);
    scheduler.runPosted();
    EXPECT_TRUE(events.empty());
}

TEST_F(EventServerTest, TakesAnUnknownAgentForClaudeButDropsItsUsage) {
    for (const HttpHeaders &agent : {HttpHeaders{}, HttpHeaders{{"x-morvane-agent", "Claude"}}}) {
        HttpHeaders headers{{"x-hook-event", "SessionStart"}, {"x-morvane-token", token}};
        headers.insert(headers.end(), agent.begin(), agent.end());
        EXPECT_EQ(httpExchange(port(), httpPost("/event", headers, sessionStart)), okAnswer);
        EXPECT_EQ(httpExchange(port(), httpPost("/usage", headers, "{}")), okAnswer);
    }
    const HttpHeaders known{{"x-morvane-agent", "codex"}, {"x-morvane-token", token}};
    EXPECT_EQ(httpExchange(port(), httpPost("/usage", known, "not JSON")), okAnswer);
    scheduler.runPosted();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events.back().agent, AgentKind::claude);
    ASSERT_EQ(usage.size(), 1u);
    EXPECT_EQ(usage.front(), std::pair(AgentKind::codex, std::string("not JSON")));
}

TEST_F(EventServerTest, TakesTheUsageOfASenderThatAwaitsNoAnswer) {
    const HttpHeaders headers{{"x-morvane-agent", "claude"}, {"x-morvane-token", token}};
    const std::string body(200'000, 'x');
    for (std::size_t count = 1; count <= 20; ++count) {
        HttpClient client(port());
        client.send(httpPost("/usage", headers, body));
        client.hangUp();
        ASSERT_TRUE(waitUntil([&] {
            scheduler.runPosted();
            return usage.size() == count;
        }));
        EXPECT_TRUE(usage.back().second == body);
    }
}

TEST_F(EventServerTest, ParksOnlyWhatCanBeDecided) {
    struct Case {
        const char *agent;
        const char *event;
        const char *decision;
    };
    const Case immediate[] = {{"claude", "PermissionRequest", "0"},
                              {"claude", "PermissionRequest", "true"},
                              {"claude", "SessionStart", "1"},
                              {"codebuddy", "PermissionRequest", "1"},
                              {"gemini", "SessionStart", "1"}};
    for (const Case &entry : immediate) {
        const HttpHeaders headers{{"x-morvane-agent", entry.agent},
                                  {"x-hook-event", entry.event},
                                  {"x-morvane-decision", entry.decision}};
        EXPECT_EQ(httpExchange(port(), eventRequest(headers, sessionStart)), okAnswer)
            << entry.agent << entry.event << entry.decision;
    }
    server->decisionsEnabled = [] { return false; };
    EXPECT_EQ(httpExchange(port(), permissionRequest("id")), okAnswer);
    scheduler.runPosted();
    EXPECT_EQ(events.size(), std::size(immediate) + 1);
}

TEST_F(EventServerTest, ClosesWithoutAWordWhatIsNoRequest) {
    const std::string head =
        "POST /event HTTP/1.1\r\nx-morvane-token: " + std::string(token) + "\r\nContent-Length: ";
    struct Case {
        std::string sent;
        bool thenEnd; ///< the peer has to end it; otherwise the server does
    };
    const Case cases[] = {
        {head + "-1\r\n\r\n", false},
        {head + "99999999999999999999\r\n\r\n{}", false},
        {head + "100\r\n\r\n{}", true},
        {"POST /ev", true},
        {"NONSENSE\r\n\r\n", true},
        {"POST /event HTTP/1.1\r\nx: \xff\r\n\r\n", true},
        {"", true},
        {std::string(1'200'000, 'x'), false},
        {"POST / HTTP/1.1\r\n" + std::string(1'200'000, 'h'), false},
    };
    for (const Case &entry : cases) {
        HttpClient client(port());
        client.send(entry.sent);
        if (entry.thenEnd) {
            client.endSending();
        }
        EXPECT_EQ(client.receiveAll(), "") << entry.sent.substr(0, 200);
    }
    EXPECT_EQ(httpExchange(port(), eventRequest({{"x-hook-event", "Stop"}}, sessionStart)),
              okAnswer);
}

TEST_F(EventServerTest, TakesACompleteRequestWhateverItsSize) {
    const std::string body = R"({"session_id":"big","pad":")" + std::string(990'000, 'x') + R"("})";
    const std::string request = eventRequest({{"x-hook-event", "Stop"}}, body);
    HttpClient client(port());
    client.send(request.substr(0, 300));
    client.send(request.substr(300));
    client.send("\r\n and some bytes too many");
    EXPECT_EQ(client.receiveAll(), okAnswer);
    scheduler.runPosted();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events.front().sessionID, "big");
}

TEST_F(EventServerTest, ClosesConnectionsThatNeverGetAnywhere) {
    HttpClient slow(port());
    slow.send("POST /event HTTP/1.1\r\n");
    HttpClient waiting = parked(permissionRequest("parked"));
    ASSERT_TRUE(waitUntil([&] { return scheduler.timersDueIn(Seconds(30)) == 1; }));
    scheduler.advance(Seconds(31));
    EXPECT_EQ(slow.receiveAll(), "");
    server->resolve("parked", AgentDecision::allow());
    EXPECT_NE(httpBody(waiting.receiveAll()), "");
}

TEST_F(EventServerTest, ClosesTheOldestOfTooManyUnfinishedOnes) {
    HttpClient oldest(port());
    std::vector<HttpClient> others;
    for (int count = 0; count < 512; ++count) {
        others.emplace_back(port());
    }
    EXPECT_EQ(oldest.receiveAll(), "");
    EXPECT_TRUE(others.back().send(eventRequest({{"x-hook-event", "Stop"}}, sessionStart)));
    EXPECT_EQ(others.back().receiveAll(), okAnswer);
}

TEST_F(EventServerTest, AnswersAThousandHooksAtOnceAndLeavesNothingOpen) {
    settle();
    const std::size_t before = openDescriptors();
    constexpr const char *agents[] = {"claude",  "codex",     "kimi",   "qoder",
                                      "factory", "codebuddy", "claude", "codex"};
    std::atomic<int> answered = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 8; ++number) {
        threads.emplace_back([&, number] {
            for (int hook = 0; hook < 125; ++hook) {
                const std::string id = std::to_string(number) + "-" + std::to_string(hook);
                const HttpHeaders headers{{"x-morvane-agent", agents[number]},
                                          {"x-hook-event", "UserPromptSubmit"}};
                const std::string body = R"({"session_id":")" + id + R"(","cwd":"/"})";
                answered += httpExchange(port(), eventRequest(headers, body)) == okAnswer;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(answered, 1000);
    scheduler.runPosted();
    const TemporaryHome home;
    Defaults defaults(home.path(), QStringLiteral("test"));
    MorvaneSettings settings(defaults);
    const auto nothing = [](const auto &...) -> std::optional<QString> { return std::nullopt; };
    SessionStore store(settings, {nothing, nothing, nothing}, scheduler);
    std::ranges::for_each(events, [&](const HookEvent &event) { store.apply(event); });
    EXPECT_EQ(store.sessions().size(), 1000);
    for (const Session &session : store.sessions()) {
        const auto agent = static_cast<std::size_t>(session.id.section('-', 0, 0).toInt());
        EXPECT_EQ(rawValue(session.agent), agents[agent]);
        EXPECT_EQ(session.state, SessionState::working);
    }
    EXPECT_TRUE(waitUntil([&] { return openDescriptors() <= before; }));
}

TEST_F(EventServerTest, MovesToTheNextFreePort) {
    const TakenPort taken(0);
    const auto second = makeServer(taken.port());
    ASSERT_FALSE(second->start());
    EXPECT_GT(second->boundPort(), taken.port());
    EXPECT_LE(second->boundPort(), taken.port() + 20);
    EXPECT_EQ(httpExchange(second->boundPort(), eventRequest({}, "{}")), okAnswer);
}

TEST_F(EventServerTest, SaysWhyWhenNoPortIsFree) {
    std::vector<TakenPort> taken;
    taken.emplace_back(std::uint16_t(0));
    for (unsigned port = taken.front().port() + 1u; port <= taken.front().port() + 20u; ++port) {
        // One that is somebody else's already serves as well.
        taken.emplace_back(static_cast<std::uint16_t>(port));
    }
    const auto second = makeServer(taken.front().port());
    const auto failure = second->start();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->message, "Address already in use");
    EXPECT_EQ(second->boundPort(), 0);
    second->releaseAllDecisions();
}

TEST_F(EventServerTest, StopsLookingAtTheLastPortThereIs) {
    const TakenPort last(65535);
    const auto second = makeServer(65535);
    EXPECT_TRUE(second->start());
}

} // namespace
} // namespace morvane
