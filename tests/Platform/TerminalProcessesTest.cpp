#include "Platform/Linux/TerminalProcesses.h"

#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <ctime>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace morvane {
namespace {

TEST(TerminalProcesses, AreTheShellAndAllThatHaveStartedIt) {
    const TemporaryHome folder;
    timespec sinceBoot{};
    ::clock_gettime(CLOCK_BOOTTIME, &sinceBoot);
    const Date began = Date::clock::now() - Seconds(60);
    const long startedAt = (sinceBoot.tv_sec - 60) * ::sysconf(_SC_CLK_TCK);
    const auto add = [&](int id, const char *name, int parent, int session, int terminal) {
        const auto status =
            QString::asprintf("%d (%s) S %d %d %d %d -1 4194304 0 0 0 0 0 0 0 0 20 0 1 0 %ld 0 0\n",
                              id, name, parent, id, session, terminal, startedAt);
        folder.write(QString::number(id) + "/stat", status.toUtf8());
    };
    constexpr int third = 0x8803;    // as the kernel writes 136:3
    constexpr int beyond = 0x10882c; // and 136:300
    add(1, "init", 0, 1, 0);
    add(20, "x (1) 2", 1, 20, 0);
    add(30, "bash", 20, 30, third);
    add(31, "agent", 30, 30, third);
    add(40, "bash", 20, 40, beyond);
    add(50, "loop", 51, 50, 7);
    add(51, "loop", 50, 51, 0);
    add(60, "of another", 61, 60, 9);
    folder.write("61/stat", "61 no name");
    folder.write("self/stat", "70 (self) S 1 70 70 34819");
    folder.write("30/environ", QByteArray("A=1\0WINDOWID=42\0XWINDOWID=5\0B", 30));

    const auto of = [&](unsigned int major, unsigned int minor) {
        return TerminalProcesses::of(makedev(major, minor), folder.path());
    };
    const TerminalProcesses found = of(136, 3);
    EXPECT_EQ(found.ancestors, (QList<TerminalProcesses::Process>{{30, "bash"}, {20, "x (1) 2"}}));
    EXPECT_LT(std::chrono::abs(found.openedAt - began), std::chrono::seconds(10));
    EXPECT_EQ(found.variable("WINDOWID"), "42");
    EXPECT_EQ(found.variable("B"), "");
    EXPECT_EQ(of(136, 300).ancestors.value(0).id, 40);
    EXPECT_EQ(of(0, 9).ancestors.size(), 1);
    EXPECT_LT(of(0, 7).ancestors.size(), 100);
    for (const unsigned int nobodys : {0U, 44U}) {
        EXPECT_TRUE(of(0, nobodys).ancestors.isEmpty());
    }
}

} // namespace
} // namespace morvane
