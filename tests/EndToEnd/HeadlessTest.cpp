#include "EndToEnd/ChildProcess.h"
#include "EndToEnd/ProgramHome.h"
#include "Support/WaitUntil.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
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
    ChildProcess late(home.hook({"claude", "Stop"}), home.environment(), "{}");
    EXPECT_EQ(late.wait(), 0);
    EXPECT_EQ(late.output(), QByteArray());
}

TEST_F(HeadlessTest, ASecondLaunchGivesWayAndARestartKeepsPortAndToken) {
    const QString script = ".morvane/hook.sh";
    ChildProcess second({MORVANE}, home.environment());
    EXPECT_EQ(second.wait(), 0);
    EXPECT_TRUE(program->isRunning());

    const QByteArray before = home.read(script);
    program->kill();
    program->wait();
    QFile::remove(home.path(script));
    start();
    ASSERT_TRUE(home.waitForHook());
    EXPECT_EQ(home.read(script), before);
}

TEST_F(HeadlessTest, WhatItHasLearnedIsOnTheDiskWhenItIsAskedToEnd) {
    const QByteArray script = home.read(".morvane/hook.sh");
    program->terminate();
    EXPECT_EQ(program->wait(), 0);
    const auto settings =
        QJsonDocument::fromJson(home.read(".config/morvane/io.morvane.morvane.json")).object();
    const QByteArray token = settings["eventToken"].toString().toUtf8();
    EXPECT_EQ(token.size(), 72);
    EXPECT_TRUE(script.contains(token));
}

} // namespace
} // namespace morvane
