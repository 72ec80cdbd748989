#pragma once

#include "Platform/SoundPlayer.h"

#include <vector>

namespace morvane {

/// Keeps what it was given to play.
class FakeSoundPlayer : public SoundPlayer {
public:
    struct Sound {
        QByteArray wave;
        double volume;
    };

    void play(const QByteArray &wave, double volume) override { played.push_back({wave, volume}); }
    void beep() override { ++beeps; }

    std::vector<Sound> played;
    int beeps = 0;
};

} // namespace morvane
