#pragma once

#include <QByteArray>

namespace morvane {

/// The machine's loudspeaker. Main thread; no call waits, and failures aren't reported.
class SoundPlayer {
public:
    SoundPlayer() = default;
    SoundPlayer(const SoundPlayer &) = delete;
    SoundPlayer &operator=(const SoundPlayer &) = delete;
    virtual ~SoundPlayer() = default;

    /// Plays a sound of at most a second, mixed with any that play already, or beeps if it can't.
    /// `wave` is a complete RIFF WAVE file with a 44-byte header and 16-bit samples. The volume,
    /// from 0 to 1, is applied on top of the machine's own.
    virtual void play(const QByteArray &wave, double volume) = 0;

    /// Plays the system bell.
    virtual void beep() = 0;
};

/// For a machine without a loudspeaker.
class NullSoundPlayer final : public SoundPlayer {
public:
    void play(const QByteArray &, double) override {}
    void beep() override {}
};

} // namespace morvane
