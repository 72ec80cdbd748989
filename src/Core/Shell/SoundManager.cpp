#include "Core/Shell/SoundManager.h"

#include "Core/Settings/MorvaneSettings.h"
#include "Core/Shell/WaveFile.h"
#include "Core/Usage/UsageMilestone.h"
#include "Platform/Scheduler.h"
#include "Platform/SoundPlayer.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>

namespace morvane {

namespace {

/// The shortest time between two plays of one sound.
constexpr Seconds debounce(2.0);

constexpr double chimeVolume = 0.58;
constexpr int chimeSamples = 15876;
constexpr double chimeLength = 0.36; // seconds

/// In Hz, each from the threshold of `UsageMilestone` at the same index on.
constexpr std::array chimeFrequencies{784.0, 880.0, 988.0};
static_assert(chimeFrequencies.size() == UsageMilestone::thresholds.size());

/// Below the first threshold it is the first frequency.
double chimeFrequency(int percent) {
    auto place = chimeFrequencies.size() - 1;
    while (place > 0 && percent / 100.0 < UsageMilestone::thresholds[place]) {
        --place;
    }
    return chimeFrequencies[place];
}

/// A tone with its fifth and its octave, struck and fading away, as a file.
QByteArray limitChime(double frequency) {
    const double angular = 2 * std::numbers::pi * frequency;
    std::vector<double> samples(chimeSamples);
    for (int i = 0; i < chimeSamples; ++i) {
        const double t = static_cast<double>(i) / WaveFile::samplesPerSecond;
        const double attack = std::min(t / 0.012, 1.0);
        const double decay = std::exp(t * -7.2 / chimeLength);
        const double tone = std::sin(angular * t) + 0.22 * std::sin(1.5 * angular * t) +
                            0.08 * std::sin(2 * angular * t);
        samples[static_cast<std::size_t>(i)] = decay * (attack * tone) * 0.72;
    }
    return WaveFile::of(samples);
}

/// Made once for each frequency, and kept: it takes a millisecond.
const QByteArray &limitChimeData(double frequency) {
    static std::map<double, QByteArray> cache;
    const auto [entry, isNew] = cache.try_emplace(frequency);
    if (isNew) {
        entry->second = limitChime(frequency);
    }
    return entry->second;
}

} // namespace

SoundManager::SoundManager(const MorvaneSettings &settings, const Scheduler &scheduler,
                           SoundPlayer &player)
    : m_settings(settings), m_scheduler(scheduler), m_player(player) {}

/// A failed turn has the sound of a call, but follows the setting for turns that have ended.
void SoundManager::sessionTransitioned(SessionState state) {
    if (!m_settings.soundEnabled()) {
        return;
    }
    const bool isEnd = state == SessionState::done || state == SessionState::failed;
    const bool isCall = state == SessionState::needsInput;
    if ((isEnd && m_settings.soundOnDone()) || (isCall && m_settings.soundOnNeedsInput())) {
        play(state == SessionState::done ? QStringLiteral("done") : QStringLiteral("needs-input"));
    }
}

void SoundManager::usageReached(const UsageMilestone &milestone) {
    if (m_settings.soundEnabled() && m_settings.soundOnUsageLimit()) {
        playLimitChime(milestone.percent());
    }
}

/// The time counts from the last sound that was played, so that a part of a steady stream of events
/// is heard. A clock that has been set back silences nothing.
bool SoundManager::shouldPlay(const QString &key) {
    const Date now = m_scheduler.now();
    const auto last = m_lastPlayedAt.constFind(key);
    if (last != m_lastPlayedAt.constEnd() && *last <= now && now - *last < debounce) {
        return false;
    }
    m_lastPlayedAt.insert(key, now);
    return true;
}

void SoundManager::play(const QString &name) {
    if (!shouldPlay(name)) {
        return;
    }
    for (const char *path : {":/Sounds/%1.wav", ":/%1.wav"}) {
        QFile file(QString::fromLatin1(path).arg(name));
        if (file.open(QIODevice::ReadOnly)) {
            m_player.play(file.readAll(), 1.0);
            return;
        }
    }
    m_player.beep();
}

void SoundManager::playLimitChime(int percent) {
    if (shouldPlay(QStringLiteral("usage-limit-%1").arg(percent))) {
        m_player.play(limitChimeData(chimeFrequency(percent)), chimeVolume);
    }
}

} // namespace morvane
