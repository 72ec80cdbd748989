#include "Core/Shell/SoundManager.h"

#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Usage/UsageMilestone.h"
#include "Support/FakeSoundPlayer.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <QFile>
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

/// How much of this frequency is in the samples.
double strength(std::span<const double> samples, double frequency) {
    const double turn = 2 * std::cos(2 * std::numbers::pi * frequency / 44100);
    double last = 0;
    double beforeLast = 0;
    for (const double sample : samples) {
        beforeLast = std::exchange(last, sample + turn * last - beforeLast);
    }
    return std::sqrt(last * last + beforeLast * beforeLast - turn * last * beforeLast);
}

/// The strongest frequency of a scale in half notes.
double pitch(std::span<const double> samples) {
    double best = 0;
    double most = 0;
    for (int step = 0; step < 48; ++step) {
        const double frequency = 220 * std::pow(2, step / 12.0);
        const double found = strength(samples, frequency);
        if (found > most) {
            best = frequency;
            most = found;
        }
    }
    return best;
}

class SoundManagerTest : public testing::Test {
protected:
    SoundManagerTest() {
        settings.setSoundEnabled(true);
        settings.setSoundOnDone(true);
    }

    static QByteArray named(const char *name) {
        QFile file(QStringLiteral(":/Sounds/%1.wav").arg(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return file.readAll();
    }

    /// What has been heard since the last time.
    QStringList heard() {
        QStringList result;
        for (const auto &sound : std::exchange(player.played, {})) {
            result << (sound.wave == named("done")          ? "done"
                       : sound.wave == named("needs-input") ? "needs-input"
                                                            : "chime");
        }
        return result;
    }

    QByteArray chimeFor(int percent) {
        scheduler.advance(Seconds(2));
        manager.playLimitChime(percent);
        EXPECT_EQ(player.played.size(), 1U);
        EXPECT_EQ(player.played.back().volume, 0.58);
        return std::exchange(player.played, {}).back().wave;
    }

    TemporaryHome home;
    Defaults defaults{home.path("defaults"), "test"};
    MorvaneSettings settings{defaults};
    ManualScheduler scheduler;
    FakeSoundPlayer player;
    SoundManager manager{settings, scheduler, player};
};

TEST_F(SoundManagerTest, PlaysWhatTheSettingsWant) {
    struct Case {
        bool enabled, onNeedsInput, onDone, onLimit;
        QStringList heard; ///< of a call, an end, a failure later, and a limit
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
        scheduler.advance(Seconds(2));
        for (const SessionState state : {working, idle, needsInput, done}) {
            manager.sessionTransitioned(state);
        }
        scheduler.advance(Seconds(2));
        manager.sessionTransitioned(failed);
        manager.usageReached({UsageWindowKind::weekly, 0.9});
        EXPECT_EQ(heard(), wanted.heard);
    }
}

TEST_F(SoundManagerTest, LeavesOutWhatHasJustBeenHeard) {
    const auto call = [this](double later) {
        scheduler.advance(Seconds(later));
        manager.sessionTransitioned(needsInput);
        return heard().size();
    };
    EXPECT_EQ(call(0), 1);
    EXPECT_EQ(call(1.9), 0);
    EXPECT_EQ(call(0.1), 1);
    EXPECT_EQ(call(1.5), 0);
    EXPECT_EQ(call(0.5), 1);
    manager.play("needs-input");
    manager.sessionTransitioned(failed);
    manager.sessionTransitioned(done);
    EXPECT_EQ(heard(), QStringList("done"));

    // What is silenced counts as not heard.
    scheduler.advance(Seconds(2));
    settings.setSoundEnabled(false);
    EXPECT_EQ(call(0), 0);
    settings.setSoundEnabled(true);
    EXPECT_EQ(call(0), 1);

    manager.usageReached({UsageWindowKind::session, 0.9});
    manager.playLimitChime(90);
    manager.playLimitChime(95);
    EXPECT_EQ(heard(), QStringList({"chime", "chime"}));

    scheduler.advance(Seconds(-3600)); // somebody sets the clock
    EXPECT_EQ(call(0), 1);
}

TEST_F(SoundManagerTest, MakesTheChimeByItsTable) {
    const QByteArray header = QByteArray::fromHex("52494646"
                                                  "2c7c0000"
                                                  "57415645666d7420"
                                                  "10000000"
                                                  "0100"
                                                  "0100"
                                                  "44ac0000"
                                                  "88580100"
                                                  "0200"
                                                  "1000"
                                                  "64617461"
                                                  "087c0000");
    struct Case {
        int percent;
        double frequency;
    };
    for (const auto &[percent, frequency] : {Case{0, 784},
                                             {84, 784},
                                             {85, 784},
                                             {89, 784},
                                             {90, 880},
                                             {94, 880},
                                             {95, 988},
                                             {100, 988}}) {
        const QByteArray wave = chimeFor(percent);
        ASSERT_EQ(wave.size(), 31796);
        EXPECT_EQ(wave.first(44).toHex(), header.toHex());
        const auto samples = samplesOf(wave);
        EXPECT_EQ(samples.front(), 0);
        // Written out for one sample within the rise and one behind it.
        for (const int i : {300, 4410}) {
            const double t = i / 44100.0;
            const double w = 2 * std::numbers::pi * frequency * t;
            const double tone = std::sin(w) + 0.22 * std::sin(1.5 * w) + 0.08 * std::sin(2 * w);
            const double rise = i == 300 ? t / 0.012 : 1;
            EXPECT_EQ(samples[static_cast<std::size_t>(i)],
                      std::trunc(std::exp(-20 * t) * rise * tone * 0.72 * 32767));
        }
        // The three tones in their proportions, and next to nothing between them.
        const double root = strength(samples, frequency);
        EXPECT_EQ(pitch(samples), pitch(std::vector<double>(samples.begin(), samples.end())));
        EXPECT_NEAR(strength(samples, 1.5 * frequency) / root, 0.22, 0.02);
        EXPECT_NEAR(strength(samples, 2 * frequency) / root, 0.08, 0.02);
        EXPECT_LT(strength(samples, 1.25 * frequency) / root, 0.05);
    }
    EXPECT_EQ(chimeFor(90).constData(), chimeFor(90).constData()) << "made anew";
}

TEST_F(SoundManagerTest, HasTwoSoundsThatAreShortSoftAndToldApart) {
    const auto ends = [](const char *name) {
        const QByteArray wave = named(name);
        EXPECT_EQ(wave.first(4), "RIFF");
        const auto samples = samplesOf(wave);
        const double loudest = std::abs(
            *std::ranges::max_element(samples, {}, [](double sample) { return std::abs(sample); }));
        EXPECT_LT(samples.size(), 0.6 * 44100) << name;
        EXPECT_GT(loudest, 0.2 * 32767) << name;
        EXPECT_LT(loudest, 0.5 * 32767) << name;
        EXPECT_LT(std::abs(samples.front()) + std::abs(samples.back()), 100) << name;
        const std::span all(samples);
        return std::pair(pitch(all.first(4410)), pitch(all.last(all.size() / 2)));
    };
    const auto [asks, asksOn] = ends("needs-input");
    EXPECT_GT(asksOn, 1.3 * asks);
    const auto [tells, tellsOn] = ends("done");
    EXPECT_LT(tellsOn, 0.85 * tells);
    manager.play("no such sound");
    EXPECT_EQ(player.beeps, 1);
    EXPECT_TRUE(player.played.empty());
}

} // namespace
} // namespace morvane
