#include "Platform/Linux/TerminalProcesses.h"

#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <ctime>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace morvane {
namespace {

/// A folder like /proc.
class TerminalProcessesTest : public testing::Test {
protected:
    TerminalProcessesTest() { ::clock_gettime(CLOCK_BOOTTIME, &sinceBoot); }

    /// Adds a process that started a minute ago.
    void add(int id, const char *name, int parent, int session, int terminal) {
        const long startedAt = (sinceBoot.tv_sec - 60) * ::sysconf(_SC_CLK_TCK);
        const auto status =
            QString::asprintf("%d (%s) S %d %d %d %d -1 4194304 0 0 0 0 0 0 0 0 20 0 1 0 %ld 0 0\n",
                              id, name, parent, id, session, terminal, startedAt);
        folder.write(QString::number(id) + "/stat", status.toUtf8());
    }

    void open(const QString &file, int id, const char *stream) {
        QDir(folder.path()).mkpath(QString::number(id) + "/fd");
        QFile::link(file, folder.path(QString::number(id) + "/fd/" + stream));
    }

    TerminalProcesses of(unsigned int major, unsigned int minor, qint64 resident = 0) {
        struct stat device {};
        ::stat(QFile::encodeName(file).constData(), &device);
        device.st_rdev = makedev(major, minor);
        return TerminalProcesses::of(device, folder.path(), resident);
    }

    static constexpr int third = 0x8803;    // as the kernel writes 136:3
    static constexpr int beyond = 0x10882c; // and 136:300
    static constexpr int null = 0x103;
    const TemporaryHome folder;
    const QString file = folder.write("terminal"); ///< stands in for each device
    timespec sinceBoot{};
};

TEST_F(TerminalProcessesTest, AreTheShellAndAllThatHaveStartedIt) {
    const Date began = Date::clock::now() - Seconds(60);
    add(1, "init", 0, 1, 0);
    add(20, "x (1) 2", 1, 20, 0);
    add(30, "bash", 20, 30, third);
    add(31, "agent", 30, 30, third);
    add(40, "bash", 20, 40, beyond);
    for (const int id : {20, 30, 31, 40}) {
        open(file, id, "1");
    }
    folder.write("self/stat", "70 (self) S 1 70 70 34819");
    folder.write("30/environ", QByteArray("A=1\0WINDOWID=42\0XWINDOWID=5\0B", 30));

    const TerminalProcesses found = of(136, 3);
    EXPECT_EQ(found.ancestors, (QList<TerminalProcesses::Process>{{30, "bash"}, {20, "x (1) 2"}}));
    EXPECT_LT(std::chrono::abs(found.openedAt - began), std::chrono::seconds(10));
    EXPECT_EQ(found.variable("WINDOWID"), "42");
    EXPECT_EQ(found.variable("B"), "");
    EXPECT_EQ(of(136, 300).ancestors.value(0).id, 40);
    EXPECT_TRUE(of(0, 0).ancestors.isEmpty());
}

/// Each container has terminals with the same numbers.
TEST_F(TerminalProcessesTest, AreNoneOfATerminalThatOnlyHasTheSameNumber) {
    add(20, "another user's", 1, 20, third);
    add(25, "in a container", 1, 25, third);
    open(folder.write("namesake"), 25, "0");
    EXPECT_TRUE(of(136, 3).ancestors.isEmpty());
    add(30, "bash", 1, 30, third);
    open(file, 30, "2");
    EXPECT_EQ(of(136, 3).ancestors.value(0).id, 30);

    add(80, "bash", 1, 80, null);
    open(file, 80, "0");
    open("/dev/null", 81, "2");
    EXPECT_EQ(of(1, 3, 80).ancestors.size(), 1);
    EXPECT_TRUE(of(1, 3, 81).ancestors.isEmpty());
}

} // namespace
} // namespace morvane
