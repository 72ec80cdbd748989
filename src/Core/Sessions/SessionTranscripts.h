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

/// Decides when the sessions' transcripts are read, and for what. It changes no session: its owner
/// gets the results.
///
/// Owned by `SessionStore`, main thread only. Never reads one session's transcript twice at once.
class SessionTranscripts {
public:
    /// `Read` reads off the main thread, and calls `Use` with the result on the main thread.
    using Use = std::function<void(const TranscriptInfo &)>;
    using Read = std::function<void(AgentKind, const QString &path, Use)>;

    enum class Purpose {
        progress,   ///< the session's model, context, permission mode and title
        completion, ///< the same, and the last words of a turn that has ended
        restored,   ///< the same for a session that was found on disk
        turnEnd,    ///< whether a turn has ended without a hook
    };

    /// Takes what a transcript tells; `asked` is the session as it was when the reading began.
    using Learn =
        std::function<void(const Session &asked, Purpose purpose, const TranscriptInfo &info)>;

    /// The sessions and `read` must outlive this; while `read` is unset nothing is read.
    SessionTranscripts(const Sessions &sessions, const Read &read, Scheduler &scheduler,
                       Learn learn);

    /// Reads the session's transcript, if it has one that isn't being read already.
    void read(const Session &session, Purpose purpose, Date now);

    /// The same for its progress, unless that was read a short while ago.
    void readProgress(const Session &session, Date now);

    /// Reads it again a few times, in case the agent writes its last words late; stops when the
    /// session leaves its present state.
    void awaitWords(const Session &session);

    /// Checks a turn that may end without a hook whenever it has been quiet for a second; while its
    /// agent waits for a person, less and less often.
    void watchTurn(const Session &session);

    /// The session is gone.
    void forget(const QString &sessionID);

private:
    /// What was there when a transcript was last checked for the end of a turn; while all of this
    /// is unchanged, there is nothing new to read.
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
    std::map<QString, TurnWatch> m_turnWatches; ///< by the session whose turn is watched
    std::map<QString, Task> m_lateWords;        ///< by the session whose turn has just ended
};

} // namespace morvane
