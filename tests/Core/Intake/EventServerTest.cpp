#include "Support/ServerFixture.h"
#include "Support/TemporaryHome.h"

#include <QScopeGuard>
#include <QSet>

#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <sys/resource.h>

namespace morvane {
namespace {

using EventServerTest = ServerFixture;

constexpr const char *sessionStart = R"({"session_id":"s","cwd":"/home/ada/project"})";

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// Limits the process to this many descriptors for as long as the result lives.
auto fewDescriptors(rlim_t count) {
    rlimit usual{};
    getrlimit(RLIMIT_NOFILE, &usual);
    const rlimit low{count, usual.rlim_max};
    setrlimit(RLIMIT_NOFILE, &low);
    return qScopeGuard([usual] { setrlimit(RLIMIT_NOFILE, &usual); });
}

TEST_F(EventServerTest, AnswersByTokenThenMethodAndPath) {
    const std::string head = " HTTP/1.1\r\nX-MORVANE-TOKEN: " + std::string(token) + "\r\n\r\n";
    const std::pair<std::string, std::string> cases[] = {
        {eventRequest({}, sessionStart), "200 OK"},
        {"GET /event" + head, "404 Not Found"},
        {"POST /event?now" + head, "404 Not Found"},
        {"POST /usage" + head, "200 OK"},
        {"GET /event HTTP/1.1\r\n\r\n", "401 Unauthorized"},
        {httpPost("/event", {{"x-morvane-token", "TOKEN-0123456788"}}, "{}"), "401 Unauthorized"},
        {httpPost("/usage", {{"x-morvane-token", "TOKEN"}}, "{}"), "401 Unauthorized"},
    };
    for (const auto &[request, status] : cases) {
        EXPECT_EQ(httpExchange(port(), request),
                  "HTTP/1.1 " + status + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n")
            << request;
    }
}

TEST_F(EventServerTest, HandsOverWhatTheHeadersTell) {
    const std::string request = eventRequest({{"x-morvane-agent", "gemini"},
                                              {"X-Hook-Event", "AfterAgent"},
                                              {"x-iterm-session", "w0t0p0:ABC"},
                                              {"x-term-program", "kitty"},
                                              {"x-host-bundle", "net.kovidgoyal.kitty"},
                                              {"x-tty", "/dev/pts/3"},
                                              {"x-tmux-pane", " %1\t"},
                                              {"x-tmux-server", "/tmp/tmux,1,0"},
                                              {"x-wezterm-pane", "  "},
                                              {"x-kitty-window", "7"},
                                              {"x-zellij-session", "zed"},
                                              {"x-orca-terminal", "orc"},
                                              {"x-morvane-kitty-listen-on", "unix:@k "},
                                              {"x-morvane-wezterm-socket", "/run/w"}},
                                             sessionStart);
    EXPECT_EQ(httpExchange(port(), request), okAnswer);
    scheduler.runPosted();
    ASSERT_EQ(events.size(), 1u);
    const HookEvent &event = events.front();
    EXPECT_EQ(event.agent, AgentKind::gemini);
    EXPECT_EQ(event.itermSessionID, "w0t0p0:ABC");
    EXPECT_EQ(event.termProgram, "kitty");
    EXPECT_EQ(event.hostBundleID, "net.kovidgoyal.kitty");
    EXPECT_EQ(event.ttyName, "/dev/pts/3");
    EXPECT_EQ(event.pane, (PaneLocator{"%1", "/tmp/tmux,1,0", std::nullopt, "7", "zed", "orc",
                                       "unix:@k", "/run/w"}));
}

TEST_F(EventServerTest, BelievesOnlyAProcessThatThereCanBe) {
    const std::pair<const char *, std::int64_t> told[] = {
        {"12 34 56", 12}, {"4194304 1 1", 4194304}, {"4194305 1 1", 0}, {"1 2 3", 0},
        {"0 1 1", 0},     {"-12 34 56", 0},         {"12 34", 0},       {"12 34 56 78", 0}};
    for (const auto &[text, id] : told) {
        events.clear();
        const HttpHeaders headers{
            {"x-hook-event", "Stop"}, {"x-morvane-process", text}, {"x-tty", ""}};
        httpExchange(port(), eventRequest(headers, sessionStart));
        scheduler.runPosted();
        ASSERT_EQ(events.size(), 1u);
        EXPECT_EQ(events.front().process.value_or(ProcessIdentity{}).id, id) << text;
        EXPECT_EQ(events.front().ttyName, std::nullopt);
    }
}

TEST_F(EventServerTest, TakesTheLastByteByItself) {
    const std::string request = eventRequest({}, sessionStart);
    HttpClient client(port());
    client.send(request.substr(0, request.size() - 1));
    // Once this is answered, the server has read what was sent before it.
    EXPECT_EQ(httpExchange(port(), request), okAnswer);
    client.send(request.substr(request.size() - 1));
    EXPECT_EQ(client.receiveAll(), okAnswer);
}

TEST_F(EventServerTest, TakesItsPortAgainWhileConnectionsWindDown) {
    const std::uint16_t before = port();
    EXPECT_EQ(httpExchange(before, eventRequest({}, "{}")), okAnswer);
    server.reset();
    EventServer next(token, before, {}, scheduler, &scheduler);
    EXPECT_TRUE(next.start());
    EXPECT_EQ(next.boundPort(), before);
}

TEST_F(EventServerTest, TakesAnUnknownAgentForClaudeButDropsItsUsage) {
    const HttpHeaders unknown{
        {"x-morvane-agent", "Codex"}, {"x-hook-event", "SessionStart"}, {"x-morvane-token", token}};
    EXPECT_EQ(httpExchange(port(), httpPost("/event", unknown, sessionStart)), okAnswer);
    EXPECT_EQ(httpExchange(port(), httpPost("/usage", unknown, "{}")), okAnswer);
    scheduler.runPosted();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events.back().agent, AgentKind::claude);
    EXPECT_TRUE(usage.empty());
}

TEST_F(EventServerTest, TakesTheUsageOfASenderThatAwaitsNoAnswer) {
    const HttpHeaders headers{{"x-morvane-agent", "codex"}, {"x-morvane-token", token}};
    const std::string body(990'000, 'x');
    for (std::size_t count = 1; count <= 10; ++count) {
        HttpClient client(port());
        client.send(httpPost("/usage", headers, body));
        client.hangUp();
        ASSERT_TRUE(comesAbout([&] { return usage.size() == count; }));
        EXPECT_TRUE(usage.back() == std::pair(AgentKind::codex, body));
    }
}

TEST_F(EventServerTest, ParksOnlyWhatCanBeDecidedAndTellsAnAgentOfNoFault) {
    const std::array<const char *, 4> immediate[] = {
        {"claude", "PermissionRequest", "0", sessionStart},
        {"claude", "SessionStart", "1", sessionStart},
        {"codebuddy", "PermissionRequest", "1", sessionStart},
        {"claude", "Unheard", "1", sessionStart},
        {"claude", "PermissionRequest", "1", "\xff\xfe"}};
    for (const auto &[agent, event, decision, body] : immediate) {
        const HttpHeaders headers{
            {"x-morvane-agent", agent}, {"x-hook-event", event}, {"x-morvane-decision", decision}};
        EXPECT_EQ(httpExchange(port(), eventRequest(headers, body)), okAnswer) << agent;
    }
    scheduler.runPosted();
    EXPECT_EQ(events.size(), 3u);
}

TEST_F(EventServerTest, AnswersInTheFormOfTheReleaseThatRunsThoughItsProgramIsGone) {
    const TemporaryHome home;
    const QString program = home.write("claude/2.1.332/claude");
    const std::string body = R"({"session_id":"s","tool_name":"Bash","tool_use_id":"t"})";
    const auto isToldAs = [&](const char *form, const char *process) {
        HttpClient hook = parked(eventRequest({{"x-hook-event", "PermissionRequest"},
                                               {"x-morvane-decision", "1"},
                                               {"x-morvane-program", program.toStdString()},
                                               {"x-morvane-process", process}},
                                              body));
        server->resolve("t", AgentDecision::allowRemembering(AgentDecision::Scope::session));
        return hook.receiveAll().find(form) != std::string::npos;
    };
    EXPECT_TRUE(isToldAs("\"addRules\"", ""));
    EXPECT_TRUE(isToldAs("\"addRules\"", "12 34 56"));
    QFile::remove(program);
    EXPECT_TRUE(isToldAs("\"addRules\"", "12 34 56"));
    EXPECT_TRUE(isToldAs("\"remembering\"", "12 35 56"));
}

TEST_F(EventServerTest, ClosesWithoutAWordWhatIsNoRequest) {
    const std::string head =
        "POST /event HTTP/1.1\r\nx-morvane-token: " + std::string(token) + "\r\nContent-Length: ";
    // What is sent, and whether the peer closes the connection; otherwise the server does.
    const std::pair<std::string, bool> cases[] = {
        {head + "99999999999999999999\r\n\r\n{}", false},
        {head + "100\r\n\r\n{}", true},
        {"POST /event HTTP/1.1\r\nx: \xff\r\n\r\n", true},
        {"POST / HTTP/1.1\r\n" + std::string(1'200'000, 'h'), false},
    };
    for (const auto &[sent, thenEnd] : cases) {
        HttpClient client(port());
        client.send(sent);
        if (thenEnd) {
            client.endSending();
        }
        EXPECT_EQ(client.receiveAll(), "") << sent.substr(0, 200);
    }
    EXPECT_EQ(httpExchange(port(), eventRequest({{"x-hook-event", "Stop"}}, sessionStart)),
              okAnswer);
}

TEST_F(EventServerTest, ClosesConnectionsThatNeverGetAnywhere) {
    HttpClient slow(port());
    slow.send("POST /event HTTP/1.1\r\n");
    HttpClient waiting = parked(permissionRequest("parked"));
    ASSERT_TRUE(waitUntil([&] { return scheduler.timersDueIn(Seconds(30)) == 1; }));
    scheduler.advance(Seconds(20));
    HttpClient later(port());
    later.send("POST /event HTTP/1.1\r\n");
    HttpClient waitingToo = parked(permissionRequest("parked later"));
    scheduler.advance(Seconds(11));
    EXPECT_EQ(slow.receiveAll(), "");
    ASSERT_TRUE(waitUntil([&] { return scheduler.timersDueIn(Seconds(19)) == 1; }));
    scheduler.advance(Seconds(20));
    EXPECT_EQ(later.receiveAll(), "");
    server->resolve("parked", AgentDecision::allow());
    EXPECT_NE(httpBody(waiting.receiveAll()), "");
}

TEST_F(EventServerTest, ClosesTheOldestOfTooManyUnfinishedOnes) {
    HttpClient oldest(port());
    std::vector<HttpClient> others;
    for (std::size_t count = 0; count < EventServer::unfinishedLimit(); ++count) {
        others.emplace_back(port());
    }
    EXPECT_EQ(oldest.receiveAll(), "");
    for (HttpClient *client : {&others.front(), &others.back()}) {
        EXPECT_TRUE(client->send(eventRequest({{"x-hook-event", "Stop"}}, sessionStart)));
        EXPECT_EQ(client->receiveAll(), okAnswer);
    }
}

TEST_F(EventServerTest, KeepsFewOpenOfManyThatAreGivenUpUnread) {
    const auto few = fewDescriptors(64);
    EventServer small(token, 0, {.onEvent = [](const HookEvent &) {}}, scheduler, &scheduler);
    ASSERT_TRUE(small.start());
    const std::string unread(10'000, 'h');
    for (int count = 0; count < 300; ++count) {
        HttpClient(small.boundPort()).send(unread);
    }
    EXPECT_EQ(httpExchange(small.boundPort(), eventRequest({}, sessionStart)), okAnswer);
}

TEST_F(EventServerTest, LeavesNothingOpenWhenItEndsBeforeStrangersWereRead) {
    const std::ptrdiff_t before = openDescriptors();
    {
        std::vector<HttpClient> strangers;
        EventServer ending(token, 0, {.onEvent = [](const HookEvent &) {}}, scheduler, &scheduler);
        ASSERT_TRUE(ending.start());
        for (int count = 0; count < 60; ++count) {
            strangers.emplace_back(ending.boundPort()).send(std::string(200'000, 'h'));
        }
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(EventServerTest, TakesInLaterWhatCameWhileNoDescriptorWasLeft) {
    const auto few = fewDescriptors(256);
    std::vector<int> taken;
    for (int file = 0; (file = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0;) {
        taken.push_back(file);
    }
    ::close(taken.back());
    taken.pop_back();
    HttpClient client(port()); // takes the last descriptor
    EXPECT_TRUE(waitUntil([&] { return scheduler.timers() == 1; }));
    std::ranges::for_each(taken, ::close);
    scheduler.advance(Seconds(1));
    client.send(eventRequest({}, sessionStart));
    EXPECT_EQ(client.receiveAll(), okAnswer);
}

TEST_F(EventServerTest, AnswersAThousandHooksAtOnceAndLeavesNothingOpen) {
    const std::ptrdiff_t before = openDescriptors();
    std::atomic<int> answered = 0;
    std::vector<std::thread> threads;
    for (const std::string agent : {"claude", "codex", "kimi", "qoder", "factory"}) {
        threads.emplace_back([&, agent] {
            for (int hook = 0; hook < 200; ++hook) {
                const std::string id = agent + std::to_string(hook);
                const HttpHeaders headers{{"x-morvane-agent", agent},
                                          {"x-hook-event", "UserPromptSubmit"}};
                const std::string body = R"({"session_id":")" + id + R"(","cwd":"/"})";
                answered += httpExchange(port(), eventRequest(headers, body)) == okAnswer;
            }
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
    EXPECT_EQ(answered, 1000);
    scheduler.runPosted();
    QSet<QString> sessions;
    for (const HookEvent &event : events) {
        EXPECT_TRUE(event.sessionID.startsWith(QString::fromLatin1(rawValue(event.agent))));
        sessions.insert(event.sessionID);
    }
    EXPECT_EQ(sessions.size(), 1000);
    EXPECT_TRUE(waitUntil([&] { return openDescriptors() <= before; }));
}

} // namespace
} // namespace morvane
