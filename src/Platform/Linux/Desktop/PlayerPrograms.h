#pragma once

#include "Platform/SoundPlayer.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <functional>
#include <list>

namespace morvane {

class Scheduler;

/// Plays by the programs that come with PipeWire, PulseAudio and ALSA, the first that can, as a
/// child of ours. One that is stuck is ended, and asked last from then on. Owned by the
/// application; main thread.
class PlayerPrograms : public QObject, public SoundPlayer {
    Q_OBJECT

public:
    /// `bell` gives the system's plain signal. The scheduler must outlive this object.
    PlayerPrograms(Scheduler &scheduler, std::function<void()> bell);
    ~PlayerPrograms() override;

    void play(const QByteArray &wave, double volume) override;
    void beep() override { m_bell(); }

private:
    struct Playback;
    using Playing = std::list<Playback>::iterator;

    void askNext(Playing playback);
    void giveUp(Playing playback, const QStringList &player);

    Scheduler &m_scheduler;
    std::function<void()> m_bell;
    QList<QStringList> m_players; ///< command lines, in the order in which they are asked
    std::list<Playback> m_playbacks;
};

} // namespace morvane
