#include "Platform/Linux/Desktop/SingleInstance.h"

#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <functional>
#include <sys/stat.h>

namespace morvane {
namespace {

constexpr Seconds noPatience(0);

class SingleInstanceTest : public testing::Test {
protected:
    using Outcome = SingleInstance::Outcome;
    using Screen = SingleInstance::Screen;
    using Start = SingleInstance::Start;

    SingleInstanceTest() {
        QDir().mkpath(home.path("run"));
        home.set("XDG_RUNTIME_DIR", home.path("run"));
    }

    Outcome claim(Seconds patience = noPatience, Screen screen = Screen::reached,
                  Start start = Start::byPerson) const {
        return SingleInstance(home.path("config"), screen, start).claim(patience);
    }

    /// The path of the lock file.
    QString lockFile() const {
        EXPECT_EQ(claim(), Outcome::isFirst);
        return home.path("config/" + QDir(home.path("config")).entryList({"*.lock"}).value(0));
    }

    TemporaryHome home;
};

TEST_F(SingleInstanceTest, ASecondTellsTheFirstAndGivesWay) {
    const QString lock = lockFile();
    SingleInstance first(home.path("config"), Screen::reached);
    int reopenings = 0;
    QObject::connect(&first, &SingleInstance::reopened, [&] { ++reopenings; });
    ASSERT_EQ(first.claim(noPatience), Outcome::isFirst);
    // A start at login doesn't reopen the first.
    EXPECT_EQ(onAnotherThread([&] { return claim(Seconds(30), Screen::reached, Start::atLogin); }),
              Outcome::toldTheFirst);
    EXPECT_EQ(onAnotherThread([&] { return claim(Seconds(30)); }), Outcome::toldTheFirst);
    EXPECT_TRUE(becomesTrue([&] { return reopenings == 1; }));
    // Also when the lock file has been deleted in the meantime.
    QFile::remove(lock);
    EXPECT_EQ(onAnotherThread([&] { return claim(Seconds(30)); }), Outcome::toldTheFirst);
    EXPECT_TRUE(becomesTrue([&] { return reopenings == 2; }));
    // With another configuration it is another program.
    EXPECT_EQ(SingleInstance(home.path("other"), Screen::reached).claim(noPatience),
              Outcome::isFirst);
}

TEST_F(SingleInstanceTest, SaysWhichOtherDisplayTheFirstIsOn) {
    home.set("DISPLAY", ":0");
    SingleInstance first(home.path("config"), Screen::reached);
    ASSERT_EQ(first.claim(noPatience), Outcome::isFirst);
    const std::tuple<QString, Screen, Outcome> seconds[] = {
        {":0.1", Screen::reached, Outcome::toldTheFirst},
        {":10.0", Screen::none, Outcome::toldTheFirst},
        {"a.host:0", Screen::reached, Outcome::isOnAnotherDisplay}};
    for (const auto &[display, screen, outcome] : seconds) {
        home.set("DISPLAY", display);
        SingleInstance second(home.path("config"), screen);
        EXPECT_EQ(onAnotherThread([&] { return second.claim(Seconds(30)); }), outcome);
        EXPECT_EQ(second.displayOfFirst(), ":0");
    }
}

TEST_F(SingleInstanceTest, LeavesNothingOfItsOwnWhereThatIsWanted) {
    const QDir folder(home.path("config"));
    const auto comeAndGo = [&] {
        SingleInstance first(folder.path(), Screen::reached);
        EXPECT_EQ(first.claim(noPatience), Outcome::isFirst);
        first.leaveNothing();
    };
    const QString other = home.write("config/other");
    comeAndGo();
    EXPECT_EQ(folder.entryList(QDir::Files), QStringList("other"));
    QFile::remove(other);
    comeAndGo();
    EXPECT_FALSE(folder.exists());
}

TEST_F(SingleInstanceTest, SaysThatTheFirstIsSilentUnlessThatRunsOnAnotherMachine) {
    const QString lock = lockFile();
    {
        // The first has the lock, but doesn't listen yet.
        KernelLock first;
        ASSERT_EQ(first.take(lock), KernelLock::Outcome::taken);
        EXPECT_EQ(claim(), Outcome::firstIsSilent);
        // A program on another machine that shares the folder is no first here.
        home.write("config/" + QFileInfo(lock).fileName(), "that machine's");
        SingleInstance second(home.path("config"), Screen::reached);
        EXPECT_EQ(second.claim(noPatience), Outcome::isFirst);
        EXPECT_NE(claim(), Outcome::isFirst);
    }
    {
        SingleInstance first(home.path("config"), Screen::reached);
        ASSERT_EQ(first.claim(noPatience), Outcome::isFirst);
        EXPECT_EQ(claim(), Outcome::firstIsSilent);
    }
    EXPECT_EQ(claim(), Outcome::isFirst);
}

TEST_F(SingleInstanceTest, NothingThatLiesInThePlaceOfItsFilesKeepsItFromStarting) {
    const QString lock = lockFile();
    const QByteArray name = QFile::encodeName(lock);
    const std::function<void()> disturbances[] = {
        [&] { home.write("config/" + QFileInfo(lock).fileName(), "4242\nmorvane\nelsewhere\n"); },
        [&] { ::mkfifo(name.constData(), 0600); }, [&] { QFile::link("/nowhere/at/all", lock); },
        [&] { QDir().mkpath(lock + "/full"); }};
    for (const auto &disturb : disturbances) {
        SCOPED_TRACE(&disturb - disturbances);
        QFile::remove(lock);
        disturb();
        SingleInstance first(home.path("config"), Screen::reached);
        EXPECT_EQ(first.claim(noPatience), Outcome::isFirst);
        EXPECT_NE(claim(), Outcome::isFirst);
    }
}

} // namespace
} // namespace morvane
