#include "Platform/Linux/WatchedProgramFile.h"

#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <QFile>
#include <gtest/gtest.h>

#include <cstdio>

namespace morvane {
namespace {

TEST(WatchedProgramFileTest, TellsThatAnotherFileStandsInItsPlace) {
    const TemporaryHome home;
    const QString path = home.write("morvane", "old");
    WatchedProgramFile file(path);
    int told = 0;
    QObject::connect(&file, &WatchedProgramFile::replaced, &file, [&] { ++told; });

    // As a package manager does it: a second name for the old one, and the new one over it.
    ASSERT_TRUE(QFile::link(path, home.path("link")));
    file.look();
    EXPECT_EQ(told, 0);
    const QString next = home.write("morvane.new", "new");
    ASSERT_EQ(std::rename(QFile::encodeName(next), QFile::encodeName(path)), 0);
    EXPECT_TRUE(becomesTrue([&] { return told > 0; }));
    file.look();
    EXPECT_EQ(told, 1);

    WatchedProgramFile removed(path);
    QObject::connect(&removed, &WatchedProgramFile::replaced, [] { ADD_FAILURE(); });
    QFile::remove(path);
    removed.look();
}

} // namespace
} // namespace morvane
