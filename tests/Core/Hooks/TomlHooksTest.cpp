#include "Core/Hooks/InstallerFixture.h"

namespace morvane {
namespace {

using enum AgentKind;
using TomlHooksTest = InstallerFixture;

TEST_F(TomlHooksTest, WritesTheBlockOfKimiAndEscapesWhatTomlWouldMisread) {
    const QString odd = home.path("a\"b\\c");
    QDir().mkpath(odd);
    qputenv("HOME", odd.toUtf8());
    connect(kimi);
    const QByteArray block = home.read("a\"b\\c/" + place(kimi));
    EXPECT_TRUE(block.startsWith("# >>> morvane:begin\n"));
    EXPECT_TRUE(block.contains("event = \"PreToolUse\"\nmatcher = \".*\"\ncommand = \"" +
                               home.path().toUtf8() + "/a\\\"b\\\\c" +
                               "/.morvane/hook.sh kimi PreToolUse\"\ntimeout = 5\n[[hooks]]\n"));
    EXPECT_TRUE(block.endsWith("timeout = 5\n# <<< morvane:end\n"));
}

TEST_F(TomlHooksTest, LeavesEveryOtherLineOfTheTomlFile) {
    // The file before connecting, what then stands before our block, and the file afterwards.
    const std::array<QByteArray, 3> cases[] = {
        {"", "", ""},
        {"a = 1", "a = 1\n\n", "a = 1\n"},
        {"a = 1\n\n\n\n", "a = 1\n\n", "a = 1\n"},
        {"a = 1\r\n# é\r\n", "a = 1\r\n# é\r\n\n", "a = 1\r\n# é\r\n"},
        {"a = 1\n# >>> morvane:begin\nold\n# <<< morvane:end tail\nb = 2\n", "a = 1\nb = 2\n\n",
         "a = 1\nb = 2\n"},
        {"# >>> morvane:begin\n# <<< morvane:end", "", ""},
    };
    for (const auto &[before, ahead, after] : cases) {
        SCOPED_TRACE(before.toStdString());
        write(kimi, before);
        connect(kimi);
        const QByteArray installed = text(kimi);
        EXPECT_EQ(installed.left(installed.indexOf("# >>>")).toStdString(), ahead.toStdString());
        EXPECT_FALSE(installer(kimi)->hasStaleEntries());
        connect(kimi);
        EXPECT_EQ(text(kimi), installed);
        QFile::remove(home.path(place(kimi) + ".morvane-original"));
        disconnect(kimi);
        EXPECT_EQ(text(kimi).toStdString(), after.toStdString());
        EXPECT_FALSE(installer(kimi)->isInstalled());
    }
}

TEST_F(TomlHooksTest, KeepsThePristineTomlFileAsTheBackup) {
    write(kimi, "a = 1\n");
    connect(kimi);
    EXPECT_EQ(backup(kimi), "a = 1\n");
    write(kimi, text(kimi).replace("timeout = 5", "timeout = 9") + "b = 2\n");
    EXPECT_TRUE(installer(kimi)->hasStaleEntries());
    connect(kimi);
    EXPECT_FALSE(installer(kimi)->hasStaleEntries());
    EXPECT_TRUE(text(kimi).startsWith("a = 1\n\nb = 2\n\n# >>>"));
    disconnect(kimi);
    EXPECT_EQ(backup(kimi), "a = 1\n");

    // In a block without an end marker nobody knows which lines are ours, so all of them stay.
    write(kimi, "# >>> morvane:begin\nb = 2\n");
    EXPECT_TRUE(installer(kimi)->isInstalled());
    EXPECT_TRUE(installer(kimi)->hasStaleEntries());
    EXPECT_EQ(failure(installer(kimi)->uninstall()),
              "config.toml did not contain the expected result after writing");
    EXPECT_EQ(text(kimi), "# >>> morvane:begin\nb = 2\n");
    for (int starts = 0; starts < 3; ++starts) {
        installer(kimi)->renew();
        EXPECT_TRUE(text(kimi).startsWith("# >>> morvane:begin\nb = 2\n\n# >>> morvane:begin\n"));
        EXPECT_EQ(text(kimi).count("morvane:begin"), 2);
        EXPECT_EQ(backup(kimi), "# >>> morvane:begin\nb = 2\n");
    }
    disconnect(kimi);
    EXPECT_EQ(text(kimi), "b = 2\n");
}

TEST_F(TomlHooksTest, TakesOutABlockThatHasLostItsEnd) {
    write(kimi, "a = 1");
    connect(kimi);
    const QByteArray endless = text(kimi).replace("# <<< morvane:end\n", "# theirs\nb = 2\n");
    for (const bool repairs : {true, false}) {
        // A key behind the block belongs to the table of its last hook, and goes with it.
        write(kimi, endless + "[c]\r\nd = 3\n");
        EXPECT_TRUE(installer(kimi)->hasStaleEntries());
        if (repairs) {
            installer(kimi)->renew();
            EXPECT_EQ(issues(kimi), QStringList());
        }
        disconnect(kimi);
        EXPECT_EQ(text(kimi).toStdString(), "a = 1\n\n# theirs\n[c]\r\nd = 3\n");
    }
    // A file is left alone if a string holds the marker, or if it can't be parsed.
    const QByteArray quoted = "s = '''\n# >>> morvane:begin\n'''\n";
    for (const QByteArray &kept : {quoted + endless, QByteArray("# >>> morvane:begin\nb =\n")}) {
        write(kimi, kept);
        EXPECT_NE(failure(installer(kimi)->uninstall()), "");
        EXPECT_EQ(text(kimi), kept);
    }
}

} // namespace
} // namespace morvane
