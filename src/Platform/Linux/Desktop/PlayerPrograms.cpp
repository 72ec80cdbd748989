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

/// Covers a second of sound, two seconds that a sound server may hold back, and a busy machine.
constexpr Seconds timeLimit(5.0);

constexpr int patienceAtEnd = 100; ///< milliseconds, for each player

/// More at once would be noise, or players that hang.
constexpr std::size_t maxAtOnce = 4;

constexpr qsizetype headerSize = 44;

/// Each opens its standard input by name, since not all of them take a pipe. The role puts the
/// sounds under the person's settings for system sounds.
QList<QStringList> knownPlayers() {
    return {
        {"pw-play", "--media-role=Notification", "/dev/stdin"},
        {"paplay", "--client-name=Morvane", "--property=media.role=event", "/dev/stdin"},
        {"aplay", "--quiet", "/dev/stdin"},
    };
}

/// Scales the samples instead of using the players' options: aplay has none, and the sound servers
/// remember the volume for whoever runs the same player next.
QByteArray atVolume(QByteArray wave, double volume) {
    char *bytes = wave.data();
    for (qsizetype at = headerSize; at + 1 < wave.size(); at += 2) {
        const double sample = qFromLittleEndian<qint16>(bytes + at) * volume;
        qToLittleEndian(static_cast<qint16>(sample), bytes + at);
    }
    return wave;
}

/// Writes the bytes to an in-memory file, which goes with this process whatever happens. False if
/// there is no room.
bool fill(QFile &file, const QByteArray &bytes) {
    const int descriptor = ::memfd_create("morvane-sound", MFD_CLOEXEC);
    return descriptor >= 0 &&
           file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
                     QFileDevice::AutoCloseHandle) &&
           file.write(bytes) == bytes.size();
}

/// Kills the player and whatever it has started. A group of 0 would mean our own.
void end(QProcess &player) {
    if (const auto group = static_cast<pid_t>(player.processId()); group > 0) {
        ::kill(-group, SIGKILL);
        player.kill();
    }
}

} // namespace

/// One sound, and the player that plays it.
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
            // A driver blocks the player, and QProcess's destructor would wait half a minute for
            // it.
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

/// The player's signals are queued, since it can't be replaced while it emits one.
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

/// The next player is tried once this one has ended. This one may have been heard before it hung,
/// so it comes last from now on, lest more sounds play twice.
void PlayerPrograms::giveUp(Playing playback, const QStringList &player) {
    m_players.removeOne(player);
    m_players.append(player);
    end(*playback->player);
}

} // namespace morvane

#include "moc_PlayerPrograms.cpp"
