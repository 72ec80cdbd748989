#include "Core/Sessions/AgentProcesses.h"

#include <algorithm>

namespace morvane {

namespace {

/// Beyond this many, an agent that loses its last session is dropped, since not every end is
/// reported. As many ended agents are remembered.
constexpr std::size_t maxAgents = 64;

} // namespace

void AgentProcesses::told(const QString &sessionID, const ProcessIdentity &process,
                          Seconds hookLimit) {
    if (std::ranges::find(m_gone, process) != m_gone.end()) {
        if (!m_processOf.contains(sessionID)) {
            m_ended(sessionID);
        }
        return;
    }
    if (const auto known = m_processOf.constFind(sessionID);
        known != m_processOf.constEnd() && *known != process) {
        forget(sessionID);
    }
    m_processOf.insert(sessionID, process);
    const auto [entry, isNew] = m_agents.try_emplace(process);
    Agent &agent = entry->second;
    agent.sessions.insert(sessionID);
    agent.isProven = !isNew;
    if (isNew) {
        agent.proof = m_scheduler.after(hookLimit, [&agent] { agent.isProven = true; });
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
    if (agent->second.sessions.isEmpty() && m_agents.size() > maxAgents) {
        m_agents.erase(agent);
    }
}

void AgentProcesses::end(const ProcessIdentity &process) {
    const auto gone = m_agents.extract(process);
    const Agent &agent = gone.mapped();
    if (agent.isProven) {
        m_gone.push_back(process);
        if (m_gone.size() > maxAgents) {
            m_gone.pop_front();
        }
    }
    for (const QString &sessionID : agent.sessions) {
        m_processOf.remove(sessionID);
        if (agent.isProven) {
            m_ended(sessionID);
        }
    }
}

} // namespace morvane
