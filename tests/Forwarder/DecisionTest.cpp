#include "CapturingListener.h"
#include "HookProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/wait.h>

namespace morvane::tests {

namespace {

namespace fs = std::filesystem;

class Decision : public testing::TestWithParam<Carrier> {};

TEST_P(Decision, IsPrintedOnlyWhenACompleteAnswerBringsOne) {
    const std::string body = "{\"decision\":\"größer\\u0000\"}\n\n";
    struct Case {
        std::string answer;
        std::string printed;
    };
    const std::vector<Case> cases{
        {response("200 OK", body), body},
        {response("200 OK", std::string(300'000, 'x')), std::string(300'000, 'x')},
        {response("200 OK", ""), ""},
        {response("401 Unauthorized", "no"), ""},
        {response("500 Oops", body), ""},
        {response("204 No Content", ""), ""},
        {response("200 OK", body).substr(0, response("200 OK", body).size() - 1), ""},
        {"HTTP/1.1 200 OK\r\nContent-Len", ""},
        {"200 0", ""},
        {"", ""},
    };
    for (const Case &testCase : cases) {
        SCOPED_TRACE(testCase.answer.substr(0, 60));
        CapturingListener listener(testCase.answer);
        HookProcess hook(GetParam(), listener.port());
        const HookResult waited = hook.run({"claude", "PreToolUse", "decide"});
        EXPECT_EQ(waited.output, testCase.printed);
        EXPECT_EQ(waited.errors, "");
        EXPECT_EQ(waited.status, 0);
        const auto request = listener.take();
        ASSERT_TRUE(request);
        EXPECT_EQ(request->headers.at("x-morvane-decision"), "1");

        EXPECT_EQ(hook.run({"claude", "PreToolUse"}).output, "");
    }
}

TEST_P(Decision, WaitsWithTheTokenOutOfSightAndEndsWithTheHook) {
    CapturingListener listener(std::nullopt);
    HookProcess hook(GetParam(), listener.port());
    const pid_t waiting = hook.start({"claude", "PreToolUse", "decide"});
    ASSERT_TRUE(listener.take());

    EXPECT_FALSE(HookProcess::standsInSomeArguments(HookProcess::token()));
    if (GetParam() == Carrier::Client) {
        const fs::path process = "/proc/" + std::to_string(waiting);
        EXPECT_TRUE(fs::equivalent(process / "exe", hook.client()));
        std::ifstream children(process / "task" / std::to_string(waiting) / "children");
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(children), {}), "");
    }
    kill(waiting, SIGTERM);
    EXPECT_TRUE(listener.awaitHangUp());
    waitpid(waiting, nullptr, 0);
}

INSTANTIATE_TEST_SUITE_P(, Decision, testing::Values(Carrier::Client, Carrier::Curl),
                         [](const auto &info) {
                             return info.param == Carrier::Client ? "client" : "curl";
                         });

} // namespace

} // namespace morvane::tests
