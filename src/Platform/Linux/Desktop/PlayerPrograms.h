#pragma once

#include "Platform/SoundPlayer.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <functional>
#include <list>

namespace morvane {

class Scheduler;

/// Plays with the first of PipeWire's, PulseAudio's and ALSA's player programs that works, as a
/// child process. A player that hangs is killed, and tried last from then on. Owned by the
/// application; main thread.
class PlayerPrograms : public QObject, public SoundPlayer {
    Q_OBJECT

public:
    /// `bell` rings the system bell. The scheduler must outlive this object.
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
    QList<QStringList> m_players; ///< command lines, in the order in which they are tried
    std::list<Playback> m_playbacks;
};

} // namespace morvane
