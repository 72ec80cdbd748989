#pragma once

#include "Platform/Processes.h"
#include "Platform/Scheduler.h"

#include <QHash>
#include <QSet>

#include <deque>
#include <functional>
#include <map>

namespace morvane {

/// Knows which process is the agent of each session, and tells when it has gone: an agent that is
/// killed, or whose terminal is closed, says nothing more. Owned by the controller; main thread.
class AgentProcesses {
public:
    /// `ended` is called with each session of a process that has ended. The processes and the
    /// scheduler outlive this.
    AgentProcesses(Processes &processes, Scheduler &scheduler,
                   std::function<void(const QString &sessionID)> ended)
        : m_processes(processes), m_scheduler(scheduler), m_ended(std::move(ended)) {}

    /// A hook of the session, which may take no longer than this, was started by this process. One
    /// that an agent has started for a single hook ends with that, so it counts as the agent from
    /// its second hook on, or once it has outlived the first. A hook may be told after the end of
    /// its agent; then the session has ended with it, unless another agent has taken it up.
    void told(const QString &sessionID, const ProcessIdentity &process, Seconds hookLimit);

    /// The session has ended.
    void forget(const QString &sessionID);

private:
    struct Agent {
        QSet<QString> sessions; ///< it may have none any more, and have one again
        bool isProven = false;
        Task proof, watch;
    };

    void end(const ProcessIdentity &process);

    Processes &m_processes;
    Scheduler &m_scheduler;
    std::function<void(const QString &)> m_ended;
    std::map<ProcessIdentity, Agent> m_agents;
    std::deque<ProcessIdentity> m_gone;          ///< the last agents to end; none comes back
    QHash<QString, ProcessIdentity> m_processOf; ///< by session
};

} // namespace morvane
