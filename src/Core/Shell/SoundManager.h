#pragma once

#include "Core/Sessions/SessionState.h"
#include "Platform/Time.h"

#include <QHash>
#include <QString>

namespace morvane {

class MorvaneSettings;
class Scheduler;
class SoundPlayer;
struct UsageMilestone;

/// Plays the sounds for sessions and for Claude's limits, as far as the settings allow. Owned by
/// `AppController`; main thread. A sound that has just been played is left out.
class SoundManager {
public:
    /// All must outlive the manager.
    SoundManager(const MorvaneSettings &settings, const Scheduler &scheduler, SoundPlayer &player);

    /// A session has entered this state.
    void sessionTransitioned(SessionState state);

    void usageReached(const UsageMilestone &milestone);

    /// Plays one of the program's own sounds, "needs-input" or "done", whatever the settings say;
    /// beeps where there is none of that name.
    void play(const QString &name);

    /// Plays the chime for this much of a limit, whatever the settings say.
    void playLimitChime(int percent);

private:
    bool shouldPlay(const QString &key);

    const MorvaneSettings &m_settings;
    const Scheduler &m_scheduler;
    SoundPlayer &m_player;
    QHash<QString, Date> m_lastPlayedAt; ///< by sound
};

} // namespace morvane
