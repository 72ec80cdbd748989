#pragma once

#include "Core/Intake/HookEvent.h"
#include "Core/Sessions/Session.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace morvane {

/// What a session learns from outside of its hooks. The rules of the states take it as a value, so
/// that they stay pure.
struct SessionSurroundings {
    /// The branch that is checked out in a working directory.
    std::function<std::optional<QString>(const QString &cwd)> gitBranch;
    /// The person's own name for a working directory.
    std::function<std::optional<QString>(const QString &cwd)> customName;
    /// The hosting application's name, for a person.
    std::function<std::optional<QString>(const std::optional<QString> &hostBundleID,
                                         const std::optional<QString> &termProgram)>
        hostAppName;
};

/// What one event does to its session: the session as it comes out, and what is to be done about
/// it. The rules are pure; `SessionStore` carries them out.
///
/// The state that each event leads to, by the session's state before:
///
///     event               none        working      needsInput   done        failed      idle
///     sessionStart        idle        idle         idle         idle        idle        idle
///     promptSubmit        working     working      working      working     working     working
///     toolUse             working     working      working      working     working     working
///     needsInput          needsInput  needsInput   needsInput   needsInput  needsInput  needsInput
///     idle                idle        done (1)     done (1)     -           -           -
///     turnEnd             done (2)    done (2)     done (2)     done (2)    done (2)    done (2)
///     turnFailed          failed      failed       failed       failed      failed      failed
///     subagentStop        ignored     -            -            -           -           -
///     sessionEnd          ignored     removed      removed      removed     removed     removed
///     permissionRequest   needsInput  needsInput   needsInput   needsInput  needsInput  needsInput
///
///     (1) unchanged while background agents are pending
///     (2) working while the event lists background agents
struct SessionTransition {
    enum class Write {
        nothing, ///< the session stays exactly as it is, and nobody is told
        store,   ///< the session is stored as it stands here
        remove,  ///< the session goes
    };

    Write write = Write::nothing;
    Session session;
    QStringList releases; ///< decisions that give way, to be resolved with `ask` before the write
    bool readsTranscript = false;

    /// The rule for this event. `before` is the stored session, if there is one.
    static SessionTransition of(const std::optional<Session> &before, const HookEvent &event,
                                Date now, const SessionSurroundings &surroundings);

    /// True for the events that end what a hook was waiting for; such a decision is released
    /// before the event's own rule runs.
    static bool endsPendingDecision(CanonicalEvent kind);
};

} // namespace morvane
