#include "Platform/Linux/Desktop/AutostartEntry.h"

#include "Platform/Linux/Desktop/DesktopEntry.h"
#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

const QString file = ".config/autostart/io.morvane.morvane.desktop";

class AutostartEntryTest : public testing::Test {
protected:
    TemporaryHome home;
    const QString program = home.writeProgram("opt/Morvane/morvane");
    AutostartEntry entry{program};
};

TEST_F(AutostartEntryTest, IsThereAsLongAsItIsWanted) {
    EXPECT_FALSE(entry.isEnabled());
    EXPECT_TRUE(entry.unregisterItem());
    ASSERT_TRUE(entry.registerItem());
    EXPECT_TRUE(entry.isEnabled());
    EXPECT_EQ(DesktopEntry::value(home.path(file), QLatin1String("Type")), "Application");
    EXPECT_EQ(DesktopEntry::value(home.path(file), QLatin1String("Exec")),
              '"' + program + "\" --at-login");
    QFile::rename(program, home.path("moved"));
    EXPECT_FALSE(entry.isEnabled());
    ASSERT_TRUE(entry.unregisterItem());
    EXPECT_FALSE(entry.isEnabled());
    EXPECT_FALSE(QFile::exists(home.path(file)));
}

TEST_F(AutostartEntryTest, IsOffWhereItStartsAnotherCopyOfTheProgram) {
    AutostartEntry other(home.writeProgram("build/morvane"));
    ASSERT_TRUE(other.registerItem());
    EXPECT_FALSE(entry.isEnabled());
    ASSERT_TRUE(entry.registerItem());
    EXPECT_TRUE(entry.isEnabled());
    EXPECT_FALSE(other.isEnabled());
    QDir().mkpath(home.path("bin"));
    QFile::link(program, home.path("bin/morvane"));
    EXPECT_TRUE(AutostartEntry(home.path("bin/morvane")).isEnabled());
}

TEST_F(AutostartEntryTest, IsOffWhereTheDesktopSwitchedItOffUntilItIsWantedAgain) {
    const std::pair<QByteArray, bool> cases[] = {
        {"Hidden=true\n", false},
        {"Hidden = true\n", false},
        {"X-GNOME-Autostart-enabled=false\n", false},
        {"Hidden=false\nX-GNOME-Autostart-enabled=true\n", true}};
    for (const auto &[lines, isEnabled] : cases) {
        home.write(file, "[Desktop Entry]\nExec=sh -c morvane\n" + lines);
        EXPECT_EQ(entry.isEnabled(), isEnabled) << lines.toStdString();
    }
    home.write(file, "[Desktop Entry]\nHidden=true\n");
    ASSERT_TRUE(entry.registerItem());
    EXPECT_TRUE(entry.isEnabled());
}

TEST_F(AutostartEntryTest, KeepsTheLinkOfWhoKeepsTheirFilesElsewhere) {
    home.write("dotfiles/entry", "[Desktop Entry]\nHidden=true\n");
    QDir().mkpath(home.path(".config/autostart"));
    QFile::link(home.path("dotfiles/entry"), home.path(file));
    ASSERT_TRUE(entry.registerItem());
    EXPECT_TRUE(home.read(QStringLiteral("dotfiles/entry")).contains("Exec="));
    QFile::remove(home.path("dotfiles/entry"));
    EXPECT_FALSE(entry.isEnabled());
    EXPECT_TRUE(entry.unregisterItem());
    EXPECT_FALSE(QFileInfo(home.path(file)).isSymLink());
}

TEST_F(AutostartEntryTest, SaysWhatKeptItFromBeingWrittenOrRemoved) {
    home.write(".config/autostart");
    EXPECT_EQ(entry.registerItem().error().message,
              home.path(".config/autostart") + " could not be created");

    QFile::remove(home.path(".config/autostart"));
    home.write(file + "/in the way");
    EXPECT_FALSE(entry.isEnabled());
    const auto written = entry.registerItem();
    const auto removed = entry.unregisterItem();
    ASSERT_FALSE(written || removed);
    EXPECT_TRUE(written.error().message.startsWith(home.path(file) + " could not be written: "));
    EXPECT_TRUE(removed.error().message.startsWith(home.path(file) + " could not be removed: "));
}

} // namespace
} // namespace morvane
