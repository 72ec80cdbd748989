#include "Platform/Linux/Desktop/PlayerPrograms.h"

#include "Platform/Linux/DescriptorLimit.h"
#include "Platform/Scheduler.h"

#include <QFile>
#include <QProcess>
#include <QtEndian>

#include <csignal>
#include <memory>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <tuple>
#include <unistd.h>

namespace morvane {

namespace {

/// For a second of sound, the two that a sound server may hold back, and a busy machine.
constexpr Seconds timeLimit(5.0);

constexpr int patienceAtEnd = 100; ///< milliseconds, with each player

/// More than that at once would be noise, or players that are stuck.
constexpr std::size_t maxAtOnce = 4;

constexpr qsizetype headerSize = 44;

/// Each reads the sound from its standard input by name, since not all of them take a pipe. By
/// their role the sounds follow what the person has set for those of the system.
QList<QStringList> knownPlayers() {
    return {
        {"pw-play", "--media-role=Notification", "/dev/stdin"},
        {"paplay", "--client-name=Morvane", "--property=media.role=event", "/dev/stdin"},
        {"aplay", "--quiet", "/dev/stdin"},
    };
}

/// In the samples, and not by an option of the players: aplay has none, and the sound servers
/// remember it, for whoever runs the same player next.
QByteArray atVolume(QByteArray wave, double volume) {
    char *bytes = wave.data();
    for (qsizetype at = headerSize; at + 1 < wave.size(); at += 2) {
        const double sample = qFromLittleEndian<qint16>(bytes + at) * volume;
        qToLittleEndian(static_cast<qint16>(sample), bytes + at);
    }
    return wave;
}

/// Puts the bytes into a file of the memory's, which is gone with us whatever happens. False where
/// there is no room.
bool fill(QFile &file, const QByteArray &bytes) {
    const int descriptor = ::memfd_create("morvane-sound", MFD_CLOEXEC);
    return descriptor >= 0 &&
           file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
                     QFileDevice::AutoCloseHandle) &&
           file.write(bytes) == bytes.size();
}

/// The player and whatever it has started. A number of 0 would mean ourselves.
void end(QProcess &player) {
    if (const auto group = static_cast<pid_t>(player.processId()); group > 0) {
        ::kill(-group, SIGKILL);
        player.kill();
    }
}

} // namespace

/// One sound, and the player that has it.
struct PlayerPrograms::Playback {
    QFile sound;
    QList<QStringList> untried;
    std::unique_ptr<QProcess> player;
    Task limit;
};

PlayerPrograms::PlayerPrograms(Scheduler &scheduler, std::function<void()> bell)
    : m_scheduler(scheduler), m_bell(std::move(bell)), m_players(knownPlayers()) {}

PlayerPrograms::~PlayerPrograms() {
    for (Playback &playback : m_playbacks) {
        end(*playback.player);
        playback.player->waitForFinished(patienceAtEnd);
        if (playback.player->state() != QProcess::NotRunning) {
            // A driver holds it, and its object would wait half a minute for it.
            std::ignore = playback.player.release();
        }
    }
}

void PlayerPrograms::play(const QByteArray &wave, double volume) {
    if (m_playbacks.size() == maxAtOnce) {
        return;
    }
    const auto playback = m_playbacks.emplace(m_playbacks.end());
    if (fill(playback->sound, atVolume(wave, volume))) {
        playback->untried = m_players;
    }
    askNext(playback);
}

/// What a player tells is heard of by the event loop, since it can't be replaced while it speaks.
void PlayerPrograms::askNext(Playing playback) {
    if (playback->untried.isEmpty()) {
        m_playbacks.erase(playback);
        m_bell();
        return;
    }
    const QStringList command = playback->untried.takeFirst();
    playback->player = std::make_unique<QProcess>();
    QProcess &player = *playback->player;
    connect(
        &player, &QProcess::errorOccurred, this,
        [this, playback](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) {
                askNext(playback);
            }
        },
        Qt::QueuedConnection);
    connect(
        &player, &QProcess::finished, this,
        [this, playback](int code, QProcess::ExitStatus status) {
            if (status == QProcess::NormalExit && code == 0) {
                m_playbacks.erase(playback);
            } else {
                askNext(playback);
            }
        },
        Qt::QueuedConnection);
    player.setStandardInputFile(QStringLiteral("/proc/self/fd/%1").arg(playback->sound.handle()));
    player.setStandardOutputFile(QProcess::nullDevice());
    player.setStandardErrorFile(QProcess::nullDevice());
    player.setChildProcessModifier([] {
        ::setpgid(0, 0);
        restoreDescriptorLimit();
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    });
    playback->limit =
        m_scheduler.after(timeLimit, [this, playback, command] { giveUp(playback, command); });
    player.start(command.first(), command.sliced(1));
}

/// The next one is asked once the player has ended. It may have been heard before it got stuck; so
/// that no sound comes twice again, its turn is the last from now on.
void PlayerPrograms::giveUp(Playing playback, const QStringList &player) {
    m_players.removeOne(player);
    m_players.append(player);
    end(*playback->player);
}

} // namespace morvane

#include "moc_PlayerPrograms.cpp"
