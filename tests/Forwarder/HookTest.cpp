#include "CapturingListener.h"
#include "HookProcess.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <iterator>
#include <sys/stat.h>
#include <sys/wait.h>

namespace morvane::tests {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Runs each test with the client and with curl.
class Hook : public testing::TestWithParam<Carrier> {};

INSTANTIATE_TEST_SUITE_P(, Hook, testing::ValuesIn(carriers), testing::PrintToStringParamName());

TEST_P(Hook, SendsItsPayloadByteForByte) {
    CapturingListener listener(response("200 OK", ""));
    HookProcess hook(GetParam(), listener.port());
    std::string large;
    for (int i = 0; i < 3'000'000; ++i)
        large.push_back(static_cast<char>(i * 7 + i / 256));
    for (const std::string &payload :
         {std::string{}, std::string("\n"), std::string("a\0\r\n\r\n\0", 7), large}) {
        EXPECT_EQ(hook.run({"claude", "Stop"}, payload), "");
        EXPECT_TRUE(listener.take().body == payload) << payload.size();
    }
}

TEST_P(Hook, GivesUpSilentlyWithoutAServer) {
    HookProcess hook(GetParam(), portWithoutServer());
    const std::string large(2'000'000, 'x');
    EXPECT_EQ(hook.run({"claude", "Stop"}, large), "");
    EXPECT_EQ(hook.run({"claude", "PreToolUse", "decide"}, large), "");
    EXPECT_EQ(hook.run({}), "");
    hook.setEnvironment({"PATH=" + hook.folder().string()}); // which has no curl
    EXPECT_EQ(hook.run({"claude", "Stop"}), "");
}

TEST_P(Hook, StaysSilentWithClosedDescriptorsToo) {
    CapturingListener listener(response("200 OK", "{}"));
    for (const std::string closed : {"<&-", ">&-", "2>&-", "<&- >&-", "<&- >&- 2>&-"}) {
        HookProcess hook(GetParam(), listener.port(),
                         {"/bin/sh", "-c", "exec /bin/sh \"$0\" \"$@\" " + closed});
        const std::string output = hook.run({"claude", "PreToolUse", "decide"});
        EXPECT_TRUE(output.empty() || output == "{}") << closed << output;
    }
}

TEST_P(Hook, PrintsADecisionOnlyWhenACompleteAnswerBringsOne) {
    const std::string body = "{\"decision\":\"größer\\u0000\"}\n\n";
    const std::string complete = response("200 OK", body);
    const std::string large(300'000, 'x');
    const std::vector<std::pair<std::string, std::string>> cases{
        {complete, body},
        {response("200 OK", large), large},
        {response("200 OK", ""), ""},
        {response("500 Oops", body), ""},
        {complete.substr(0, complete.size() - 1), ""},
        {"HTTP/1.1 200 OK\r\nContent-Len", ""},
        {"200 0", ""},
        {"", ""}};
    for (const auto &[answer, printed] : cases) {
        SCOPED_TRACE(answer.substr(0, 60));
        CapturingListener listener(answer);
        HookProcess hook(GetParam(), listener.port());
        EXPECT_EQ(hook.run({"claude", "PreToolUse", "decide"}), printed);
        EXPECT_EQ(listener.take().headers["x-morvane-decision"], "1");
        EXPECT_EQ(hook.run({"claude", "PreToolUse"}), "");
    }
}

TEST_P(Hook, WaitsWithTheTokenOutOfSightAndEndsWithTheHook) {
    CapturingListener listener(std::nullopt);
    HookProcess hook(GetParam(), listener.port());
    const pid_t waiting = hook.start({"claude", "PreToolUse", "decide"});
    ASSERT_NE(listener.take().requestLine, "");

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

TEST(Client, ThatCannotRunHereIsReplacedByCurl) {
    std::ofstream busy;
    for (const auto &shell : HookProcess::shells()) {
        for (const auto &spoil : std::vector<std::function<void(const fs::path &)>>{
                 // As in a home that was connected on a machine with another processor.
                 [](const fs::path &client) { fs::rename(client, client.string() + "-other"); },
                 // As a full disk may leave it.
                 [](const fs::path &client) {
                     fs::resize_file(client, 0);
                     fs::last_write_time(client, fs::last_write_time(client) + 10s);
                 },
                 [](const fs::path &client) { fs::remove(client) && fs::create_directory(client); },
                 [](const fs::path &client) {
                     fs::remove(client);
                     mkfifo(client.c_str(), 0700);
                 },
                 [](const fs::path &client) { fs::permissions(client, fs::perms::owner_read); },
                 // The kernel starts no program that is open for writing.
                 [&](const fs::path &client) { busy = std::ofstream(client, std::ios::app); }}) {
            CapturingListener listener(response("200 OK", "{}"));
            HookProcess hook(Carrier::Client, listener.port(), shell);
            spoil(hook.client());
            EXPECT_EQ(hook.run({"claude", "PreToolUse", "decide"}), "{}");
            EXPECT_TRUE(listener.take().headers["user-agent"].starts_with("curl/"));
        }
    }
}

TEST(Client, KeepsAPayloadWithoutAnEndToItself) {
    CapturingListener listener(response("200 OK", ""));
    HookProcess hook(Carrier::Client, listener.port());
    EXPECT_EQ(hook.run({"claude", "Stop"}, std::string(17 << 20, 'x')), "");
    EXPECT_TRUE(listener.hasHeardNothing());
}

} // namespace

} // namespace morvane::tests
