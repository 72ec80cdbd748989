#pragma once

#include "Platform/Processes.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <map>

namespace morvane {

/// Knows which process is the agent of each session, and tells when it has gone: an agent that is
/// killed, or whose terminal is closed, says nothing more. Owned by the controller; main thread.
class AgentProcesses {
public:
    /// `ended` is called with each session of a process that has ended. The processes outlive this.
    AgentProcesses(Processes &processes, std::function<void(const QString &sessionID)> ended)
        : m_processes(processes), m_ended(std::move(ended)) {}

    /// A hook of the session was started by this process. It counts as the agent from its second
    /// hook on: one that an agent has started for a single hook ends with that.
    void told(const QString &sessionID, const ProcessIdentity &process);

    /// The session has ended.
    void forget(const QString &sessionID);

private:
    struct Agent {
        QSet<QString> sessions;
        int hooks = 0;
        Task watch;
    };

    void end(const ProcessIdentity &process);

    Processes &m_processes;
    std::function<void(const QString &)> m_ended;
    std::map<ProcessIdentity, Agent> m_agents;
    QHash<QString, ProcessIdentity> m_processOf; ///< by session
};

} // namespace morvane
