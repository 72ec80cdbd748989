#include "Platform/Linux/Desktop/PlayerPrograms.h"

#include "Platform/RaiseLowDescriptorLimit.h"
#include "Support/IsGone.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <optional>

namespace morvane {
namespace {

/// A machine whose players are scripts, each of which notes that it was asked and what it was
/// given.
class PlayerProgramsTest : public testing::Test {
protected:
    PlayerProgramsTest() { home.set("PATH", home.path("bin")); }

    void install(const QString &name, const QByteArray &then) const {
        const QString script = home.write("bin/" + name, "#!/bin/sh\nfor sound; do :; done\n"
                                                         "/bin/cat \"$sound\" >\"$HOME/heard\"\n"
                                                         "echo ${0##*/} >>\"$HOME/asked\"\n" +
                                                             then + "\n");
        QFile(script).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    /// Whether the program that a player waits for still runs.
    bool sleeps() const {
        const qint64 sleeper = home.read("sleeper").trimmed().toLongLong();
        return sleeper > 0 && !isGone(sleeper);
    }

    /// Waits until exactly these have been asked, in their order, since the last time.
    bool becomeAsked(const QStringList &players) {
        const bool result = becomesTrue(
            [&] { return QString(home.read("asked")).split('\n', Qt::SkipEmptyParts) == players; });
        QFile::remove(home.path("asked"));
        return result;
    }

    TemporaryHome home;
    ManualScheduler scheduler;
    int bells = 0;
    std::optional<PlayerPrograms> programs{std::in_place, scheduler, [this] { ++bells; }};
    const QByteArray header = QByteArray(44, 'h');
    const QByteArray wave = header + QByteArray::fromHex("64009cff0180");
};

TEST_F(PlayerProgramsTest, AsksOneAfterAnotherAndBeepsInTheEnd) {
    install("pw-play", "exit 1");
    install("paplay", "kill -SEGV $$");
    const QByteArray limit = raiseLowDescriptorLimit();
    install("aplay", "ulimit -n >>\"$HOME/asked\"");
    programs->play(wave, 0.5);
    EXPECT_TRUE(becomeAsked({"pw-play", "paplay", "aplay", limit}));
    EXPECT_EQ(home.read("heard"), header + QByteArray::fromHex("3200ceff01c0"));

    install("paplay", "");
    QFile::remove(home.path("bin/pw-play"));
    programs->play(wave, 1);
    EXPECT_TRUE(becomeAsked({"paplay"}));
    EXPECT_EQ(home.read("heard"), wave);
    EXPECT_EQ(bells, 0);

    QFile::remove(home.path("bin/paplay"));
    QFile::remove(home.path("bin/aplay"));
    programs->play(wave, 1);
    EXPECT_TRUE(becomesTrue([&] { return bells == 1; }));
}

TEST_F(PlayerProgramsTest, EndsAPlayerThatIsStuckAndAsksItLastFromThenOn) {
    // It plays, waits for another program that never ends, and writes down the id of that.
    install("pw-play", "/bin/sleep 600 &\necho $! >\"$HOME/sleeper\"\nwait");
    install("paplay", "");
    programs->play(wave, 1);
    EXPECT_TRUE(becomesTrue([&] { return sleeps(); }));
    EXPECT_TRUE(becomeAsked({"pw-play"}));
    scheduler.advance(Seconds(5));
    EXPECT_TRUE(becomeAsked({"paplay"}));
    EXPECT_TRUE(becomesTrue([&] { return !sleeps(); }));

    install("paplay", "exit 1");
    programs->play(wave, 1);
    EXPECT_TRUE(becomeAsked({"paplay", "pw-play"}));
    EXPECT_TRUE(becomesTrue([&] { return sleeps(); }));
    programs.reset();
    EXPECT_TRUE(becomesTrue([&] { return !sleeps(); }));
}

TEST_F(PlayerProgramsTest, KeepsNoCrowdOfStuckPlayers) {
    install("pw-play", "exec /bin/sleep 600");
    for (int sound = 0; sound < 6; ++sound) {
        programs->play(wave, 1);
    }
    EXPECT_TRUE(becomeAsked({"pw-play", "pw-play", "pw-play", "pw-play"}));
    // No other player is installed.
    scheduler.advance(Seconds(5));
    EXPECT_TRUE(becomesTrue([&] { return bells == 4; }));
    programs->play(wave, 1);
    EXPECT_TRUE(becomeAsked({"pw-play"}));
}

} // namespace
} // namespace morvane
