#include "EndToEnd/ChildProcess.h"
#include "EndToEnd/ProgramHome.h"
#include "Support/WaitUntil.h"

#include <QFile>
#include <gtest/gtest.h>

#include <memory>

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

    /// One hook from start to end; its output, or none unless its status is 0.
    std::optional<QByteArray> runHook(const QStringList &arguments, const QByteArray &payload) {
        ChildProcess hook(home.hook(arguments), home.environment(), payload);
        const auto status = hook.wait();
        return status == 0 ? std::optional(hook.output()) : std::nullopt;
    }

    ProgramHome home;
    std::unique_ptr<ChildProcess> program;
};

TEST_F(HeadlessTest, AWaitingHookIsSilentWhenTheProgramEnds) {
    ChildProcess hook(home.hook({"claude", "PermissionRequest", "decide"}), home.environment(),
                      permissionRequest);
    EXPECT_TRUE(hook.isRunning());
    program->kill();
    EXPECT_EQ(hook.wait(), 0);
    EXPECT_EQ(hook.output(), QByteArray());
    EXPECT_EQ(runHook({"claude", "Stop"}, "{}"), QByteArray());
}

TEST_F(HeadlessTest, ASecondLaunchGivesWayAndARestartKeepsPortAndToken) {
    ChildProcess second({MORVANE}, home.environment());
    EXPECT_EQ(second.wait(), 0);
    EXPECT_TRUE(program->isRunning());

    const auto script = [this] {
        QFile file(home.path(".morvane/hook.sh"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QByteArray before = script();
    program->kill();
    program->wait();
    QFile::remove(home.path(".morvane/hook.sh"));
    start();
    ASSERT_TRUE(home.waitForHook());
    EXPECT_EQ(script(), before);
}

} // namespace
} // namespace morvane
