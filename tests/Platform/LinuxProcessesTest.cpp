#include "Platform/Linux/LinuxProcesses.h"

#include "Platform/Linux/EventLoopScheduler.h"
#include "Platform/Linux/TerminalProcesses.h"
#include "Support/IsGone.h"
#include "Support/ManualPool.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace morvane {
namespace {

void makeShell(const QString &path) {
    QFile::copy(QFileInfo("/bin/sh").canonicalFilePath(), path);
}

/// Starts a shell that waits, and returns once the shell has printed a line: QProcess reports a
/// start before the kernel has the new name and environment of the process.
void startWaiting(QProcess &process, const QString &program) {
    process.start(program, {"-c", "echo; read line"});
    EXPECT_TRUE(becomesTrue([&] { return process.canReadLine(); }));
}

class LinuxProcessesTest : public testing::Test {
protected:
    LinuxProcessesTest() {
        makeShell(folder.filePath(name));
        sleeper.setWorkingDirectory(folder.path());
        startWaiting(sleeper, folder.filePath(name));
    }
    ~LinuxProcessesTest() override {
        sleeper.kill();
        sleeper.waitForFinished();
    }

    EventLoopScheduler scheduler;
    ManualPool background;
    LinuxProcesses processes{scheduler, background};
    QTemporaryDir folder;
    /// With a blank in it, and different from that of a test that runs at the same time.
    const QString name = QString("my agent of %1").arg(::getpid());
    QProcess sleeper;
};

TEST_F(LinuxProcessesTest, TellsOfTheEndOfExactlyThatProcess) {
    const auto self = processes.identityOf(sleeper.processId());
    ASSERT_TRUE(self);
    ProcessIdentity earlier = *self;
    --earlier.startedAt;
    ProcessIdentity elsewhere = earlier;
    ++elsewhere.pidNamespace;
    int ends = 0;
    int earlierEnds = 0;
    int others = 0;
    const Task watch = processes.whenEnded(*self, [&] { ++ends; });
    Task cancelled = processes.whenEnded(*self, [&] { ++others; });
    const Task past = processes.whenEnded(earlier, [&] { ++earlierEnds; });
    const Task unknown = processes.whenEnded(elsewhere, [&] { ++others; });
    cancelled.cancel();
    background.runAll();
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

/// With an agent in PID and mount namespaces of its own.
class SandboxTest : public LinuxProcessesTest {
protected:
    void SetUp() override {
        const QString script = R"(mount -t tmpfs none "$1" && mkdir "$1/files" &&
            ln -s "$1/files" "$1/link" && touch "$1/files/it" && exec "$0" -c 'read line')";
        const QStringList command{"--pid",     "--mount", "--fork", "--kill-child",
                                  "sh",        "-c",      script,   folder.filePath(name),
                                  files.path()};
        sandbox.start("unshare", ::geteuid() == 0 ? command : QStringList("-r") + command);
        const auto isThere = [&] { return isReady() || sandbox.state() == QProcess::NotRunning; };
        EXPECT_TRUE(becomesTrue(isThere));
        if (sandbox.state() == QProcess::NotRunning) {
            GTEST_SKIP() << "needs a kernel that lets us make a sandbox";
        }
    }
    ~SandboxTest() override {
        sandbox.kill();
        sandbox.waitForFinished();
    }

    bool isReady() {
        const QString self = QString::number(sandbox.processId());
        QFile children(QString("/proc/%1/task/%1/children").arg(self));
        number = children.open(QIODevice::ReadOnly) ? children.readAll().trimmed().toInt() : 0;
        const auto here = processes.identityOf(number);
        agent = here.value_or(ProcessIdentity{});
        agent.id = 1; // the agent's own id in its namespace
        return here && !processes.fileOf(agent, files.filePath("files/it")).isEmpty();
    }

    QTemporaryDir files;
    QProcess sandbox;
    pid_t number = 0; ///< of the agent, as we see it
    ProcessIdentity agent;
};

TEST_F(SandboxTest, HasFilesThatOnlyItsAgentSeesAndTellsOfItsEnd) {
    EXPECT_EQ(processes.fileOf(agent, files.filePath("link/it")),
              QString("/proc/%1/root%2/files/it").arg(number).arg(files.path()));
    EXPECT_EQ(processes.fileOf(agent, files.filePath("nothing")), QString());
    ProcessIdentity earlier = agent;
    --earlier.startedAt;
    int ends = 0;
    int others = 0;
    const Task watch = processes.whenEnded(agent, [&] { ++ends; });
    const Task never = processes.whenEnded(earlier, [&] { ++others; });
    processes.whenEnded(agent, [&] { ++others; }).cancel();
    background.runAll();
    ::kill(number, SIGKILL);
    EXPECT_TRUE(becomesTrue([&] { return ends == 1; }));
    EXPECT_EQ(others, 0);
}

TEST_F(LinuxProcessesTest, FindsFilesOfOurOwnMountsByTheirPlainPath) {
    const QString plain = QFileInfo(folder.filePath(name)).canonicalFilePath();
    QFile::link(folder.path(), folder.filePath("link"));
    const QString linked = folder.filePath("link/" + name);
    const auto self = processes.identityOf(sleeper.processId());
    ASSERT_TRUE(self);
    EXPECT_EQ(processes.fileOf(*self, linked), plain);
    sleeper.kill();
    sleeper.waitForFinished();
    EXPECT_EQ(processes.fileOf(*self, linked), plain);
    ProcessIdentity elsewhere = *self;
    ++elsewhere.pidNamespace;
    EXPECT_EQ(processes.fileOf(elsewhere, linked), QString());

    // A process with a root of its own.
    const QByteArray root = QFile::encodeName(folder.path());
    const pid_t child = ::fork();
    if (child == 0) {
        const bool may = ::geteuid() == 0 || ::unshare(CLONE_NEWUSER) == 0;
        may && ::chroot(root.constData()) == 0 && ::pause();
        ::_exit(0);
    }
    QString found;
    EXPECT_TRUE(becomesTrue([&] {
        const auto there = processes.identityOf(child);
        found = there ? processes.fileOf(*there, "/" + name) : QString();
        return !found.isEmpty() || isGone(child);
    }));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(found == plain || found.isEmpty()) << "the kernel may not let us";
}

TEST_F(SandboxTest, HasNoTerminalOfOursUnlessItsAgentCanBeSeen) {
    QProcess terminal;
    terminal.start("script", {"-qfc", "tty; exec sleep 600", "/dev/null"});
    EXPECT_TRUE(becomesTrue([&] { return terminal.canReadLine(); }));
    const QString tty = QString::fromUtf8(terminal.readLine()).trimmed();
    ProcessIdentity unseen = agent;
    unseen.id = sleeper.processId();
    auto ended = processes.identityOf(sleeper.processId());
    ASSERT_TRUE(ended);
    --ended->startedAt;
    EXPECT_FALSE(TerminalProcesses::of(tty).ancestors.isEmpty());
    EXPECT_FALSE(TerminalProcesses::of(tty, agent).ancestors.isEmpty());
    EXPECT_FALSE(TerminalProcesses::of(tty, ended).ancestors.isEmpty());
    EXPECT_TRUE(TerminalProcesses::of(tty, unseen).ancestors.isEmpty());
    terminal.kill();
    terminal.waitForFinished();
}

TEST_F(LinuxProcessesTest, TellsWhatItWasStartedWithAndThatItIsStopped) {
    const std::int64_t id = sleeper.processId();
    EXPECT_TRUE(processes.environment(id).contains("PATH=" + qgetenv("PATH")));
    const auto self = processes.identityOf(id);
    ASSERT_TRUE(self);
    ProcessIdentity earlier = *self;
    --earlier.startedAt;
    EXPECT_NE(processes.hearsKeys(*self), false);
    ::kill(static_cast<pid_t>(id), SIGSTOP);
    EXPECT_TRUE(becomesTrue([&] { return processes.hearsKeys(*self) == false; }));
    EXPECT_EQ(processes.hearsKeys(earlier), std::nullopt);
}

TEST_F(LinuxProcessesTest, FindsWhereAProgramRuns) {
    const QString here = QFileInfo(folder.path()).canonicalFilePath();
    EXPECT_EQ(processes.workingDirectories(name), QStringList{here});
    EXPECT_EQ(processes.workingDirectories("my"), QStringList());

    // A script and the native program that it starts count once; a program that starts its namesake
    // counts twice.
    const TemporaryHome other;
    const QString interpreter = other.path("node");
    const QString native = other.path(name);
    makeShell(interpreter);
    makeShell(native);
    other.write("script/" + name, R"("$1" -c 'echo there; read line'; :)");
    for (const QString &outer : {interpreter, native}) {
        QProcess twice;
        twice.setWorkingDirectory(other.path());
        twice.start(outer, {other.path("script/" + name), native});
        EXPECT_TRUE(becomesTrue([&] { return twice.canReadLine(); }));
        const auto found = processes.workingDirectories(name).value_or(QStringList());
        EXPECT_EQ(found.count(QFileInfo(other.path()).canonicalFilePath()),
                  outer == native ? 2 : 1);
        EXPECT_EQ(found.count(here), 1);
        twice.closeWriteChannel();
        twice.waitForFinished();
    }
}

TEST_F(LinuxProcessesTest, DoesntTellWhereAProgramRunsThatDoesntLetItselfBeLookedInto) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "needs a user who may not look into everything";
    }
    const QString closed = name + " closed";
    makeShell(folder.filePath(closed));
    QFile::setPermissions(folder.filePath(closed), QFile::ExeOwner);
    QProcess process;
    startWaiting(process, folder.filePath(closed));
    EXPECT_EQ(processes.workingDirectories(closed), std::nullopt);
    process.kill();
    process.waitForFinished();
}

} // namespace
} // namespace morvane
