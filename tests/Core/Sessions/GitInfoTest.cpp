#include "Core/Sessions/GitInfo.h"

#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

namespace morvane {
namespace {

TEST(GitInfo, ReadsTheHeadInEveryForm) {
    const std::pair<QByteArray, std::optional<QString>> cases[] = {
        {"ref: refs/heads/main\n", "main"},
        {"  ref: refs/heads/feature/a-b \r\n", "feature/a-b"},
        {"0123456789abcdef0123456789abcdef01234567\n", "0123456"},
        {"ref: refs/heads/\n", {}},
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
    const std::pair<QByteArray, std::optional<QString>> cases[] = {
        {"gitdir: " + gitDir + "\n", "side"},
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
    EXPECT_EQ(GitInfo::branch(directory + "//"), "main");
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
