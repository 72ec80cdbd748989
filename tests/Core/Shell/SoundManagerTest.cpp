#include "Core/Shell/SoundManager.h"

#include "Core/Usage/UsageMilestone.h"
#include "Support/CoreWorld.h"
#include "Support/FakeSoundPlayer.h"
#include "Support/Printing.h"

#include <QtEndian>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

namespace morvane {
namespace {

using enum SessionState;

std::vector<double> samplesOf(const QByteArray &wave) {
    std::vector<double> result;
    for (qsizetype at = 44; at + 1 < wave.size(); at += 2) {
        result.push_back(qFromLittleEndian<qint16>(wave.constData() + at));
    }
    return result;
}

/// How much of this frequency is in the samples, by Goertzel's algorithm.
double strength(std::span<const double> samples, double frequency) {
    const double turn = 2 * std::cos(2 * std::numbers::pi * frequency / 44100);
    double last = 0;
    double beforeLast = 0;
    for (const double sample : samples) {
        beforeLast = std::exchange(last, sample + turn * last - beforeLast);
    }
    return std::sqrt(last * last + beforeLast * beforeLast - turn * last * beforeLast);
}

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
        for (const auto &sound : std::exchange(player.played, {})) {
            result << (sound.wave == named("done")          ? "done"
                       : sound.wave == named("needs-input") ? "needs-input"
                                                            : "chime");
        }
        return result;
    }

    FakeSoundPlayer player;
    SoundManager manager{settings, scheduler, player};
};

TEST_F(SoundManagerTest, PlaysWhatTheSettingsWant) {
    struct Case {
        bool enabled, onNeedsInput, onDone, onLimit;
        QStringList heard;
    };
    for (const auto &wanted : {
             Case{true, true, true, true, {"needs-input", "done", "needs-input", "chime"}},
             Case{true, true, false, false, {"needs-input"}},
             Case{true, false, true, false, {"done", "needs-input"}},
             Case{false, true, true, true, {}},
         }) {
        settings.setSoundEnabled(wanted.enabled);
        settings.setSoundOnNeedsInput(wanted.onNeedsInput);
        settings.setSoundOnDone(wanted.onDone);
        settings.setSoundOnUsageLimit(wanted.onLimit);
        for (const SessionState state : {working, idle, needsInput, done, failed}) {
            scheduler.advance(Seconds(2));
            manager.sessionTransitioned(state);
        }
        manager.usageReached({UsageWindowKind::weekly, 0.9});
        EXPECT_EQ(heard(), wanted.heard);
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
    settings.setSoundEnabled(false);
    EXPECT_EQ(heardAfter(2), 0);
    settings.setSoundEnabled(true);
    EXPECT_EQ(heardAfter(0), 1);
    scheduler.advance(Seconds(-3600)); // somebody sets the clock
    EXPECT_EQ(heardAfter(0), 1);
}

TEST_F(SoundManagerTest, MakesTheChimeByItsTable) {
    const QByteArray header = "524946462c7c000057415645666d7420100000000100010044ac0000885801000200"
                              "100064617461087c0000";
    struct Case {
        int percent;
        double rising, falling; ///< samples 300 and 4410
    };
    for (const auto &[percent, rising, falling] :
         {Case{84, 9300, 1220}, {90, -1483, 0}, {100, -9888, -2518}}) {
        scheduler.advance(Seconds(2));
        manager.playLimitChime(percent);
        const auto &[wave, volume] = player.played.back();
        EXPECT_EQ(volume, 0.58);
        ASSERT_EQ(wave.size(), 31796);
        EXPECT_EQ(wave.first(44).toHex(), header);
        const auto samples = samplesOf(wave);
        EXPECT_EQ(samples[0], 0);
        EXPECT_EQ(samples[300], rising);
        EXPECT_EQ(samples[4410], falling);
    }
}

TEST_F(SoundManagerTest, HasTwoSoundsThatAreShortAndSoftAndOneRisesWhereTheOtherFalls) {
    /// How much higher the note at the end is than the one at the start, among those of the two.
    const auto rise = [](const char *name, double low, double high) {
        const auto samples = samplesOf(named(name));
        const auto [least, most] = std::ranges::minmax(samples);
        EXPECT_LT(samples.size(), 0.6 * 44100) << name;
        EXPECT_GT(most, 0.2 * 32767) << name;
        EXPECT_LT(std::max(most, -least), 0.5 * 32767) << name;
        EXPECT_LT(std::abs(samples.back()), 50) << name << " ends with a click";
        const auto lean = [&](std::span<const double> part) {
            return strength(part, high) / strength(part, low);
        };
        const std::span all(samples);
        return lean(all.last(all.size() / 2)) / lean(all.first(4410));
    };
    EXPECT_GT(rise("needs-input", 587.33, 880), 10);
    EXPECT_LT(rise("done", 523.25, 659.26), 0.1);
    manager.play("no such sound");
    EXPECT_EQ(player.beeps, 1);
}

} // namespace
} // namespace morvane
