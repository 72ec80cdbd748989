#pragma once

#include "Platform/Processes.h"
#include "Platform/Scheduler.h"

#include <QHash>
#include <QSet>

#include <deque>
#include <functional>
#include <map>

namespace morvane {

/// Knows which process is each session's agent, and reports its end: an agent that is killed, or
/// whose terminal is closed, sends no more hooks. Owned by the controller; main thread.
class AgentProcesses {
public:
    /// `ended` is called with each session of a process that has ended. The processes and the
    /// scheduler outlive this.
    AgentProcesses(Processes &processes, Scheduler &scheduler,
                   std::function<void(const QString &sessionID)> ended)
        : m_processes(processes), m_scheduler(scheduler), m_ended(std::move(ended)) {}

    /// This process started a hook of the session, which runs no longer than `hookLimit`. An agent
    /// may start a process for a single hook, so a process counts as the agent from its second hook
    /// on, or once it has outlived the first. A hook may arrive after its agent has ended; then the
    /// session has ended too, unless another agent has taken it up.
    void told(const QString &sessionID, const ProcessIdentity &process, Seconds hookLimit);

    /// The session has ended.
    void forget(const QString &sessionID);

private:
    struct Agent {
        QSet<QString> sessions; ///< may become empty, and fill again
        bool isProven = false;
        Task proof, watch;
    };

    void end(const ProcessIdentity &process);

    Processes &m_processes;
    Scheduler &m_scheduler;
    std::function<void(const QString &)> m_ended;
    std::map<ProcessIdentity, Agent> m_agents;
    std::deque<ProcessIdentity> m_gone; ///< the agents that ended last; none of them comes back
    QHash<QString, ProcessIdentity> m_processOf; ///< by session
};

} // namespace morvane
