#include "CapturingListener.h"
#include "HookProcess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace morvane::tests {

namespace {

namespace fs = std::filesystem;

class Payload : public testing::TestWithParam<Carrier> {};

void expectSilence(const HookResult &result) {
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_EQ(result.status, 0);
}

/// Turns the client into one for another processor, as far as its header tells.
void retarget(const fs::path &client) {
    std::fstream file(client, std::ios::in | std::ios::out | std::ios::binary);
    constexpr std::streamoff machine = 18;
    file.seekg(machine);
    const int own = file.get();
    constexpr int x86 = 62;
    constexpr int arm = 183;
    file.seekp(machine);
    file.put(static_cast<char>(own == x86 ? arm : x86));
}

TEST_P(Payload, ArrivesByteForByte) {
    CapturingListener listener(response("200 OK", ""));
    HookProcess hook(GetParam(), listener.port());
    std::string large;
    for (int i = 0; i < 3'000'000; ++i)
        large.push_back(static_cast<char>(i * 7 + i / 256));
    for (const std::string &payload :
         {std::string{}, std::string("\n"), std::string("a\0\r\n\r\n\0", 7), large}) {
        expectSilence(hook.run({"claude", "Stop"}, payload));
        const auto request = listener.take();
        ASSERT_TRUE(request);
        EXPECT_TRUE(request->body == payload) << request->body.size();
    }
}

TEST_P(Payload, IsGivenUpSilentlyWithoutAServer) {
    HookProcess hook(GetParam(), portWithoutServer());
    const std::string large(2'000'000, 'x');
    expectSilence(hook.run({"claude", "Stop"}, large));
    expectSilence(hook.run({"claude", "PreToolUse", "decide"}, large));
    expectSilence(hook.run({}));
}

TEST_P(Payload, ClosedDescriptorsStaySilentToo) {
    CapturingListener listener(response("200 OK", "{\"decision\":1}"));
    for (const std::vector<int> &closed :
         std::vector<std::vector<int>>{{0}, {1}, {2}, {0, 1}, {0, 1, 2}}) {
        HookProcess hook(GetParam(), listener.port());
        hook.setClosed(closed);
        const HookResult result = hook.run({"claude", "PreToolUse", "decide"});
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.status, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(, Payload, testing::Values(Carrier::Client, Carrier::Curl),
                         [](const auto &info) {
                             return info.param == Carrier::Client ? "client" : "curl";
                         });

TEST(Client, ThatCannotRunHereIsReplacedByCurl) {
    for (const auto &shell : HookProcess::shells()) {
        for (const auto &spoil : std::vector<void (*)(const fs::path &)>{
                 retarget, [](const fs::path &client) { fs::resize_file(client, 0); },
                 [](const fs::path &client) { fs::permissions(client, fs::perms::owner_read); }}) {
            CapturingListener listener(response("200 OK", "{}"));
            HookProcess hook(Carrier::Client, listener.port(), shell);
            spoil(hook.client());
            EXPECT_EQ(hook.run({"claude", "PreToolUse", "decide"}).output, "{}");
            const auto request = listener.take();
            ASSERT_TRUE(request);
            EXPECT_TRUE(request->headers.at("user-agent").starts_with("curl/"));
        }
    }
}

TEST(Client, ThatCannotBeStartedAfterAllIsNoFailure) {
    for (const auto &shell : HookProcess::shells()) {
        HookProcess hook(Carrier::Client, portWithoutServer(), shell);
        const std::ofstream busy(hook.client(), std::ios::app); // no program starts meanwhile
        expectSilence(hook.run({"claude", "Stop"}));
    }
}

TEST(Client, AndCurlBothMissingAreNoFailure) {
    HookProcess hook(Carrier::Curl, portWithoutServer());
    hook.setEnvironment({"PATH=" + hook.folder().string()});
    expectSilence(hook.run({"claude", "Stop"}));
}

} // namespace

} // namespace morvane::tests
