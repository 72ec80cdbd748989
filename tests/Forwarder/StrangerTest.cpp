#include "CapturingListener.h"
#include "HookProcess.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <functional>
#include <future>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

// While Morvane isn't running, another user's program can take its port.

namespace morvane::tests {

namespace {

constexpr uid_t anotherUser = 4711;

class Stranger : public testing::TestWithParam<Carrier> {
protected:
    void SetUp() override {
        if (geteuid() != 0)
            GTEST_SKIP() << "needs root";
    }

    static void expectNothingSaid() {
        for (const std::string address : {"127.0.0.1", "0.0.0.0", "::", "::ffff:127.0.0.1"}) {
            SCOPED_TRACE(address);
            CapturingListener stranger(response("200 OK", "allow"), address, anotherUser);
            for (const auto &shell : HookProcess::shells()) {
                HookProcess hook(GetParam(), stranger.port(), shell);
                EXPECT_EQ(hook.run({"claude", "Stop"}), "");
                EXPECT_EQ(hook.run({"claude", "PreToolUse", "decide"}), "");
                HookProcess statusLine(GetParam(), stranger.port(), shell, "statusline.sh");
                EXPECT_EQ(statusLine.run({}, R"({"cwd":"/a"})"), "a\n");
            }
            EXPECT_TRUE(stranger.hasHeardNothing());
        }
    }
};

INSTANTIATE_TEST_SUITE_P(, Stranger, testing::ValuesIn(carriers),
                         testing::PrintToStringParamName());

/// Runs `action` in a thread in which the kernel refuses netlink sockets, as in many sandboxes, and
/// calls `asked` before each refusal.
void withoutNetlink(
    const std::function<void()> &action, const std::function<void()> &asked = [] {}) {
    std::promise<int> questions;
    std::thread sandbox([&] {
        constexpr auto load = BPF_LD | BPF_W | BPF_ABS;
        constexpr auto equals = BPF_JMP | BPF_JEQ | BPF_K;
        std::array<sock_filter, 6> steps{
            {BPF_STMT(load, offsetof(seccomp_data, nr)), BPF_JUMP(equals, SYS_socket, 0, 3),
             BPF_STMT(load, offsetof(seccomp_data, args)), BPF_JUMP(equals, AF_NETLINK, 0, 1),
             BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF),
             BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)}};
        const sock_fprog filter{steps.size(), steps.data()};
        prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
        const auto source = static_cast<int>(syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER,
                                                     SECCOMP_FILTER_FLAG_NEW_LISTENER, &filter));
        questions.set_value(source);
        if (source >= 0)
            action();
    });
    pollfd source{questions.get_future().get(), POLLIN, 0};
    EXPECT_GE(source.fd, 0);
    while (source.fd >= 0 && poll(&source, 1, -1) > 0 && (source.revents & POLLIN) != 0) {
        seccomp_notif question{};
        ioctl(source.fd, SECCOMP_IOCTL_NOTIF_RECV, &question);
        asked();
        seccomp_notif_resp refusal{question.id, 0, -EACCES, 0};
        ioctl(source.fd, SECCOMP_IOCTL_NOTIF_SEND, &refusal);
    }
    sandbox.join();
    close(source.fd);
}

TEST_P(Stranger, HearsNothingAndIsNotHeardAlsoWhereTheKernelRefusesTheQuestion) {
    expectNothingSaid();
    withoutNetlink(expectNothingSaid);
}

// The port is ours again, but the connections that the stranger accepted are still his.
TEST(FormerListener, HearsNothingWhereTheKernelRefusesTheQuestion) {
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root";
    CapturingListener stranger(response("200 OK", "allow"), "127.0.0.1", geteuid(), anotherUser);
    HookProcess hook(Carrier::Client, stranger.port());
    withoutNetlink(
        [&] {
            EXPECT_EQ(hook.run({"claude", "PreToolUse", "decide"}), "");
        },
        [&] { EXPECT_TRUE(stranger.awaitConnection()); });
    EXPECT_TRUE(stranger.hasHeardNothing());
}

TEST(Server, OfThisUserIsKnownWhereTheKernelRefusesTheQuestion) {
    CapturingListener listener(response("200 OK", "{}"));
    HookProcess hook(Carrier::Client, listener.port());
    withoutNetlink([&] { EXPECT_EQ(hook.run({"claude", "PreToolUse", "decide"}), "{}"); });
    EXPECT_EQ(listener.take().headers["x-morvane-token"], HookProcess::token());
}

} // namespace

} // namespace morvane::tests
