#pragma once

#include "Core/Agents/TranscriptInfo.h"
#include "Core/Sessions/Session.h"
#include "Platform/Scheduler.h"

#include <QDateTime>
#include <QHash>
#include <QSet>

#include <functional>
#include <map>

namespace morvane {

/// When the transcripts of the sessions are read, and for what. It changes no session: what is
/// read goes to its owner.
///
/// Owned by `SessionStore`, main thread only. Of one session no two readings run at once.
class SessionTranscripts {
public:
    /// Reads a transcript off the main thread, and hands on what it tells on the main thread.
    using Use = std::function<void(const TranscriptInfo &)>;
    using Read = std::function<void(AgentKind, const QString &path, Use)>;

    enum class Purpose {
        progress,   ///< what a session is running with
        completion, ///< the same, and the last words of a turn that has ended
        restored,   ///< the same of a session that was found on disk
        turnEnd,    ///< whether a turn has ended without a hook
    };

    /// Takes what a transcript tells; `asked` is the session as it was when the reading began.
    using Learn =
        std::function<void(const Session &asked, Purpose purpose, const TranscriptInfo &info)>;

    /// The sessions and `read` must outlive this; while `read` is unset nothing is read.
    SessionTranscripts(const Sessions &sessions, const Read &read, Scheduler &scheduler,
                       Learn learn);

    /// Reads the session's transcript, as far as it has one that isn't being read.
    void read(const Session &session, Purpose purpose, Date now);

    /// The same for its progress, unless that was read a short while ago.
    void readProgress(const Session &session, Date now);

    /// Reads it again a few times, in case the agent writes its last words late; not beyond the
    /// end of this turn.
    void awaitWords(const Session &session);

    /// Looks up a turn that may end without a hook, whenever it has been quiet for a second; while
    /// its agent waits, ever less often.
    void watchTurn(const Session &session);

    /// The session is gone.
    void forget(const QString &sessionID);

private:
    /// When a transcript was last looked at for the end of a turn; it has no more to tell while
    /// nothing of this changes.
    struct Look {
        Date lastEventAt;
        QDateTime writtenAt;
        qint64 size = 0;

        friend bool operator==(const Look &, const Look &) = default;
    };

    struct TurnWatch {
        Look last;
        Date nextAt = {};
        Task next;
    };

    bool canRead(const Session &session) const;
    void awaitWords(const QString &sessionID, Date endedAt, std::size_t looks);
    void lookForEnd(const Session &session);

    const Sessions &m_sessions;
    const Read &m_read;
    Scheduler &m_scheduler;
    Learn m_learn;
    QSet<QString> m_inFlight; ///< sessions whose transcript is being read
    QHash<QString, Date> m_lastReadAt;
    std::map<QString, TurnWatch> m_turnWatches; ///< by the session whose turn may end unsaid
    std::map<QString, Task> m_lateWords;        ///< by the session whose turn has just ended
};

} // namespace morvane
