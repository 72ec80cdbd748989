#include "EndToEnd/ChildProcess.h"
#include "EndToEnd/ProgramHome.h"
#include "Support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace morvane {
namespace {

const QByteArray permissionRequest =
    R"({"session_id":"s","tool_name":"Bash","tool_input":{"command":"make"}})";

/// The real program without a display, and the real forwarder that it has written.
class HeadlessTest : public testing::Test {
protected:
    void SetUp() override {
        start();
        ASSERT_TRUE(home.waitForHook());
    }

    void start() {
        program = std::make_unique<ChildProcess>(QStringList{MORVANE}, home.environment());
    }

    ProgramHome home;
    std::unique_ptr<ChildProcess> program;
};

TEST_F(HeadlessTest, LetsAHookGoAtOnceThatNobodyCouldAnswer) {
    ChildProcess hook(home.hook({"claude", "PermissionRequest", "decide"}), home.environment(),
                      permissionRequest);
    EXPECT_EQ(hook.outputAtEnd(), "");
    EXPECT_TRUE(program->isRunning());
}

TEST_F(HeadlessTest, HasItsPortAndItsTokenAgainAfterASuddenEnd) {
    // The token may reach the disk a moment later than the script.
    ASSERT_TRUE(waitUntil([this] {
        return home.read(".config/morvane/io.morvane.morvane.json").contains("eventToken");
    }));
    program->kill();
    ChildProcess late(home.hook({"claude", "Stop"}), home.environment(), "{}");
    EXPECT_EQ(late.outputAtEnd(), "");
    const QString script = ".morvane/hook.sh";
    const QByteArray before = home.read(script);
    QFile::remove(home.path(script));
    start();
    ASSERT_TRUE(home.waitForHook());
    EXPECT_EQ(home.read(script), before);
}

TEST(CommandLineTest, IsAnsweredWithoutTouchingAnything) {
    TemporaryHome home;
    QProcessEnvironment environment;
    environment.insert("HOME", home.path());
    const auto run = [&](const QStringList &arguments) {
        ChildProcess program(QStringList{MORVANE} + arguments, environment);
        const auto status = program.wait();
        return std::pair(status, program.output());
    };
    const auto [status, version] = run({"--version"});
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(version.startsWith("Morvane ")) << version.constData();
    EXPECT_TRUE(run({"--help"}).second.contains("--version"));
    EXPECT_EQ(run({"--at-login", "--version"}).second, version);
    for (const char *unknown : {"--displays", "-platform", "", "--help\n"}) {
        EXPECT_EQ(run({unknown}), std::pair(std::optional(2), QByteArray())) << unknown;
    }
    EXPECT_TRUE(QDir(home.path()).isEmpty(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden));
}

TEST(CommandLineTest, IsAnsweredByNoLibraryOfTheFolderThatTheProgramIsStartedIn) {
    TemporaryHome home;
    home.write("libQt6Core.so.6", "not ours");
    ChildProcess program(
        {"sh", "-c", "cd \"$1\" && exec \"$2\" --version", "sh", home.path(), MORVANE},
        QProcessEnvironment::systemEnvironment());
    EXPECT_EQ(program.wait(), 0);
}

TEST(StartTest, TakesNoFolderThatIsNotNamedFromTheRootOn) {
    ProgramHome home;
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
        home.setVariable(name, "relative");
    }
    ChildProcess program({"sh", "-c", "cd && exec \"$0\"", MORVANE}, home.environment());
    EXPECT_TRUE(home.waitForHook());
    program.terminate();
    EXPECT_EQ(program.wait(), 0);
    EXPECT_FALSE(QFile::exists(home.path("relative")));
}

TEST(StartTest, OutlivesALimitOfWhatAFileMayHold) {
    ProgramHome home;
    ChildProcess program({"sh", "-c", "ulimit -f 0 && exec \"$0\"", MORVANE}, home.environment());
    EXPECT_TRUE(waitUntil(
        [&] { return !QDir(home.path("run")).entryList({"*.socket"}, QDir::System).isEmpty(); }));
    // The first program answers the second once it has begun to write.
    ChildProcess second({MORVANE}, home.environment());
    EXPECT_EQ(second.wait(), 0);
    program.terminate();
    EXPECT_EQ(program.wait(), 0);
}

} // namespace
} // namespace morvane
