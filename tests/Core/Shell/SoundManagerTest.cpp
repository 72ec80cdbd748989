#include "Core/Shell/SoundManager.h"

#include "Core/Usage/UsageMilestone.h"
#include "Support/CoreWorld.h"
#include "Support/FakeSoundPlayer.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

using enum SessionState;

class SoundManagerTest : public testing::Test, protected CoreWorld {
protected:
    SoundManagerTest() { settings.setSoundEnabled(true); }

    static QByteArray named(const char *name) {
        QFile file(QStringLiteral(":/Sounds/%1.wav").arg(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return file.readAll();
    }

    /// What has been played since the last time.
    QStringList heard() {
        QStringList result;
        for (const QByteArray &wave : std::exchange(player.played, {})) {
            result << (wave == named("done")          ? "done"
                       : wave == named("needs-input") ? "needs-input"
                                                      : "chime");
        }
        return result;
    }

    FakeSoundPlayer player;
    SoundManager manager{settings, scheduler, player};
};

TEST_F(SoundManagerTest, PlaysWhatTheSettingsWant) {
    // Whether sounds play at all, when input is needed, when done, and at a limit.
    const std::tuple<bool, bool, bool, bool, QStringList> cases[] = {
        {true, true, true, true, {"needs-input", "done", "needs-input", "chime"}},
        {true, true, false, false, {"needs-input"}},
        {true, false, true, false, {"done", "needs-input"}},
        {false, true, true, true, {}}};
    for (const auto &[enabled, onNeedsInput, onDone, onLimit, expected] : cases) {
        settings.setSoundEnabled(enabled);
        settings.setSoundOnNeedsInput(onNeedsInput);
        settings.setSoundOnDone(onDone);
        settings.setSoundOnUsageLimit(onLimit);
        for (const SessionState state : {working, idle, needsInput, done, failed}) {
            scheduler.advance(Seconds(2));
            manager.sessionTransitioned(state);
        }
        manager.usageReached({UsageWindowKind::weekly, 0.9});
        EXPECT_EQ(heard(), expected);
    }
}

TEST_F(SoundManagerTest, LeavesOutWhatHasJustBeenHeard) {
    const auto heardAfter = [this](double time) {
        scheduler.advance(Seconds(time));
        manager.sessionTransitioned(needsInput);
        return heard().size();
    };
    EXPECT_EQ(heardAfter(0), 1);
    EXPECT_EQ(heardAfter(1.5), 0);
    EXPECT_EQ(heardAfter(0.5), 1);
    manager.play("needs-input");
    manager.play("done");
    manager.usageReached({UsageWindowKind::session, 0.9});
    manager.playLimitChime(90);
    manager.playLimitChime(95);
    EXPECT_EQ(heard(), QStringList({"done", "chime", "chime"}));
    scheduler.advance(Seconds(-3600)); // somebody sets the clock
    EXPECT_EQ(heardAfter(0), 1);
}

TEST_F(SoundManagerTest, HasAnotherChimeForEachThreshold) {
    const QByteArray header = "524946462c7c000057415645666d7420100000000100010044ac0000885801000200"
                              "100064617461087c0000";
    QSet<QByteArray> chimes;
    for (const int percent : {84, 90, 100}) {
        manager.playLimitChime(percent);
        EXPECT_EQ(player.played.last().first(44).toHex(), header);
        chimes.insert(player.played.last());
    }
    EXPECT_EQ(chimes.size(), 3);
}

} // namespace
} // namespace morvane
