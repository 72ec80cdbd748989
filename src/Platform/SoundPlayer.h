#pragma once

#include <QByteArray>

namespace morvane {

/// The machine's loudspeaker. Main thread; nothing here waits, and nothing fails in a way that is
/// told.
class SoundPlayer {
public:
    SoundPlayer() = default;
    SoundPlayer(const SoundPlayer &) = delete;
    SoundPlayer &operator=(const SoundPlayer &) = delete;
    virtual ~SoundPlayer() = default;

    /// Plays a sound of a second at most, over what plays already, or beeps where that can't be
    /// done. It is a RIFF WAVE file, whole, with a header of 44 bytes and 16-bit samples; the
    /// volume from 0 to 1 is the sound's own, beside what the person has set for the machine.
    virtual void play(const QByteArray &wave, double volume) = 0;

    /// The system's plain signal.
    virtual void beep() = 0;
};

/// That of a machine without one.
class NullSoundPlayer final : public SoundPlayer {
public:
    void play(const QByteArray &, double) override {}
    void beep() override {}
};

} // namespace morvane
