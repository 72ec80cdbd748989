#include "Core/Sessions/Session.h"

#include "Core/Ground/TimeFormat.h"
#include "Core/Sessions/GitInfo.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <tuple>

namespace morvane {
namespace {

using Text = std::optional<QString>;

TEST(Session, IsNamedAfterItsFolderUnlessAPersonNamedIt) {
    const std::tuple<Text, QString, QString> cases[] = {{{}, "", "session"},
                                                        {"Mine", "/home/ada/project", "Mine"},
                                                        {"", "/home/ada/project", "project"},
                                                        {{}, "/home/ada/project/", "project"},
                                                        {{}, "/", "/"},
                                                        {{}, "//", "/"}};
    for (const auto &[customName, cwd, name] : cases) {
        Session session;
        session.customName = customName;
        session.cwd = cwd;
        session.aiTitle = session.lastPrompt = "Not the name";
        EXPECT_EQ(session.displayName(), name);
    }
}

TEST(Session, SumsUpItsContext) {
    using enum ContextPressure;
    const std::tuple<int, QString, ContextPressure> cases[] = {
        {999, "999", comfortable},  {1999, "1k", comfortable}, {139'999, "139k", comfortable},
        {140'000, "140k", filling}, {180'000, "180k", tight},  {200'000, "200k", large}};
    Session session;
    EXPECT_EQ(session.contextLabel(), std::nullopt);
    EXPECT_EQ(session.contextPressure(), std::nullopt);
    for (const auto &[tokens, label, pressure] : cases) {
        session.contextTokens = tokens;
        EXPECT_EQ(session.contextLabel(), label);
        EXPECT_EQ(session.contextPressure(), pressure) << tokens;
    }
}

TEST(Session, RemarksOnlyOnUnusualPermissionModes) {
    using enum AgentKind;
    const std::tuple<AgentKind, Text, bool> cases[] = {
        {claude, {}, false},          {claude, "default", false},   {claude, "plan", true},
        {claude, "on-request", true}, {codex, "on-request", false}, {codex, "default", true}};
    for (const auto &[agent, mode, notable] : cases) {
        Session session;
        session.agent = agent;
        session.permissionMode = mode;
        EXPECT_EQ(session.notablePermissionMode(), notable ? mode : std::nullopt);
    }
}

TEST(TimeFormat, ShowsHowLongSomethingLastsAndHowLongItIsAway) {
    const Date now{std::chrono::seconds(1'700'000'000)};
    for (const auto &[seconds, text] : {std::pair(-5, "0s"), std::pair(59, "59s"),
                                        std::pair(60, "1m"), std::pair(7500, "2h05")}) {
        EXPECT_EQ(TimeFormat::elapsed(now, now + Seconds(seconds)), text);
    }
    for (const auto &[seconds, text] :
         {std::pair(-90, "0m"), std::pair(59, "0m"), std::pair(3599, "59m"), std::pair(3600, "1h"),
          std::pair(86399, "23h"), std::pair(3 * 86400, "3d")}) {
        EXPECT_EQ(TimeFormat::remaining(now + Seconds(seconds), now), text);
    }
}

TEST(TimeFormat, KnowsWhenAnAgeBecomesUntrue) {
    const Date start{std::chrono::seconds(1'700'000'000)};
    for (const double seconds :
         {-5.0, 0.0, 59.5, 60.0, 3599.0, 3600.0, 9000.0, 86399.0, 200'000.0}) {
        const Date now = start + Seconds(seconds);
        const Seconds change = TimeFormat::untilAgoChanges(start, now);
        const QString text = TimeFormat::ago(start, now);
        EXPECT_EQ(TimeFormat::ago(start, now + change - Seconds(0.01)), text);
        EXPECT_NE(TimeFormat::ago(start, now + change + Seconds(0.01)), text);
    }
}

TEST(GitInfo, ReadsTheHeadInEveryForm) {
    const std::pair<QByteArray, Text> cases[] = {
        {"ref: refs/heads/main\n", "main"},
        {"  ref: refs/heads/feature/a-b \r\n", "feature/a-b"},
        {"0123456789abcdef0123456789abcdef01234567\n", "0123456"},
        {"ref: refs/heads/\n", {}},
        {"\n \n", {}},
        {"ref: refs/heads/\xff\xfe\n", {}}};
    const TemporaryHome home;
    for (const auto &[head, branch] : cases) {
        home.write("repository/.git/HEAD", head);
        EXPECT_EQ(GitInfo::branch(home.path("repository")), branch) << head.constData();
    }
    EXPECT_EQ(GitInfo::branch(""), std::nullopt);
}

TEST(GitInfo, FollowsTheFileOfALinkedWorktree) {
    const TemporaryHome home;
    home.write("main/.git/HEAD", "ref: refs/heads/main\n");
    home.write("main/.git/worktrees/side/HEAD", "ref: refs/heads/side\n");
    const QByteArray gitDir = home.path("main/.git/worktrees/side").toUtf8();
    const std::pair<QByteArray, Text> cases[] = {{"gitdir: " + gitDir + "\n", "side"},
                                                 {"\n\ngitdir:   " + gitDir + " \nmore", "side"},
                                                 {"gitdir:" + gitDir, {}},
                                                 {"worktree\ngitdir: " + gitDir, {}},
                                                 {"gitdir: ../main/.git/worktrees/side", {}},
                                                 {"gitdir: /nowhere", {}}};
    for (const auto &[text, branch] : cases) {
        home.write("side/.git", text);
        EXPECT_EQ(GitInfo::branch(home.path("side")), branch) << text.constData();
    }
}

TEST(GitInfo, LooksUpwardsSoFarAndNoFurther) {
    const TemporaryHome home;
    home.write("repository/.git/HEAD", "ref: refs/heads/main\n");
    const QString directory = home.path("repository") + QString("/d").repeated(24);
    EXPECT_EQ(GitInfo::branch(directory), "main");
    EXPECT_EQ(GitInfo::branch(directory + "/d"), std::nullopt);

    // The nearest repository counts, even one without a branch.
    home.write("repository/d/.git/config");
    EXPECT_EQ(GitInfo::branch(directory), std::nullopt);

    // A pipe in the place of a file ends the search, and keeps nobody waiting.
    home.write("repository/piped/.keep");
    home.write("repository/headless/.git/config");
    for (const char *pipe : {"repository/piped/.git", "repository/headless/.git/HEAD"}) {
        ASSERT_EQ(::mkfifo(QFile::encodeName(home.path(pipe)).constData(), 0600), 0);
    }
    EXPECT_EQ(GitInfo::branch(home.path("repository/piped")), std::nullopt);
    EXPECT_EQ(GitInfo::branch(home.path("repository/headless")), std::nullopt);
}

} // namespace
} // namespace morvane
