#pragma once

#include "Platform/SoundPlayer.h"

#include <QByteArrayList>

namespace morvane {

/// Keeps what it was given to play.
class FakeSoundPlayer : public SoundPlayer {
public:
    void play(const QByteArray &wave, double) override { played.append(wave); }
    void beep() override {}

    QByteArrayList played;
};

} // namespace morvane
