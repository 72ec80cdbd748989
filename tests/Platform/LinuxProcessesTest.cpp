#include "Platform/Linux/LinuxProcesses.h"

#include "Platform/Linux/EventLoopScheduler.h"
#include "Support/Printing.h"
#include "Support/WaitUntil.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

namespace morvane {
namespace {

class LinuxProcessesTest : public testing::Test {
protected:
    LinuxProcessesTest() {
        sleeper.setWorkingDirectory(folder.path());
        QFile::copy(QFileInfo("/bin/sleep").canonicalFilePath(), folder.filePath("my agent"));
        sleeper.start(folder.filePath("my agent"), {"600"});
        sleeper.waitForStarted();
    }
    ~LinuxProcessesTest() override {
        sleeper.kill();
        sleeper.waitForFinished();
    }

    EventLoopScheduler scheduler;
    LinuxProcesses processes{scheduler};
    QTemporaryDir folder;
    QProcess sleeper;
};

TEST_F(LinuxProcessesTest, TellsOfTheEndOfExactlyThatProcess) {
    const auto self = LinuxProcesses::identityOf(sleeper.processId());
    ASSERT_TRUE(self);
    ProcessIdentity earlier = *self;
    --earlier.startedAt;
    ProcessIdentity elsewhere = earlier;
    ++elsewhere.numberSpace;
    int ends = 0;
    int earlierEnds = 0;
    int others = 0;
    const Task watch = processes.whenEnded(*self, [&] { ++ends; });
    Task cancelled = processes.whenEnded(*self, [&] { ++others; });
    const Task past = processes.whenEnded(earlier, [&] { ++earlierEnds; });
    const Task unknown = processes.whenEnded(elsewhere, [&] { ++others; });
    cancelled.cancel();
    EXPECT_TRUE(becomesTrue([&] { return earlierEnds == 1; }));
    EXPECT_EQ(ends, 0);
    sleeper.kill();
    EXPECT_TRUE(becomesTrue([&] { return ends == 1; }));
    sleeper.waitForFinished();
    const Task late = processes.whenEnded(*self, [&] { ++ends; });
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(becomesTrue([&] { return ends == 2; }));
    EXPECT_EQ(others, 0);
}

TEST_F(LinuxProcessesTest, TellsWhatItWasStartedWithAndThatItIsStopped) {
    const std::int64_t id = sleeper.processId();
    EXPECT_EQ(processes.environment(id).value("PATH"), qEnvironmentVariable("PATH"));
    const auto self = LinuxProcesses::identityOf(id);
    ASSERT_TRUE(self);
    ProcessIdentity earlier = *self;
    --earlier.startedAt;
    EXPECT_NE(processes.hearsKeys(*self), false);
    ::kill(static_cast<pid_t>(id), SIGSTOP);
    EXPECT_TRUE(becomesTrue([&] { return processes.hearsKeys(*self) == false; }));
    EXPECT_EQ(processes.hearsKeys(earlier), std::nullopt);
}

TEST_F(LinuxProcessesTest, FindsWhereAProgramRuns) {
    const auto found = processes.workingDirectories("my agent");
    EXPECT_EQ(found, QStringList{QFileInfo(folder.path()).canonicalFilePath()});
    EXPECT_EQ(processes.workingDirectories("my"), QStringList());
}

} // namespace
} // namespace morvane
