#include "Core/Sessions/AgentProcesses.h"

namespace morvane {

void AgentProcesses::told(const QString &sessionID, const ProcessIdentity &process) {
    if (const auto known = m_processOf.constFind(sessionID);
        known != m_processOf.constEnd() && *known != process) {
        forget(sessionID);
    }
    m_processOf.insert(sessionID, process);
    Agent &agent = m_agents[process];
    agent.sessions.insert(sessionID);
    ++agent.hooks;
    if (agent.hooks == 2) {
        agent.watch = m_processes.whenEnded(process, [this, process] { end(process); });
    }
}

void AgentProcesses::forget(const QString &sessionID) {
    const auto process = m_processOf.constFind(sessionID);
    if (process == m_processOf.constEnd()) {
        return;
    }
    const auto agent = m_agents.find(*process);
    m_processOf.erase(process);
    agent->second.sessions.remove(sessionID);
    if (agent->second.sessions.isEmpty()) {
        m_agents.erase(agent);
    }
}

void AgentProcesses::end(const ProcessIdentity &process) {
    const auto agent = m_agents.find(process);
    const QSet<QString> sessions = agent->second.sessions;
    for (const QString &sessionID : sessions) {
        forget(sessionID);
        m_ended(sessionID);
    }
}

} // namespace morvane
