#pragma once

#include "Core/Agents/AgentContract.h"
#include "Core/Agents/AgentKind.h"
#include "Core/Agents/AgentRelease.h"

#include <QString>

#include <optional>
#include <span>

/// The releases of agents that are known to speak otherwise than the first contract. Whether one
/// belongs here is found out by running it. Safe from any thread.
namespace morvane::AgentReleases {

/// The releases from the first of them that was tried up to the next that the agent's maker gives a
/// new major number, which nobody can vouch for any more.
struct Listed {
    AgentKind agent;
    AgentRelease from;
    AgentContract contract;
};

std::span<const Listed> all();

/// What an agent's releases are known by.
struct Program {
    QString command; ///< what a person types
    QString package; ///< of npm; those for one platform alone go on behind a "-"
};

/// None for an agent that has no release in the table, whose program nobody has to find.
std::optional<Program> program(AgentKind agent);

} // namespace morvane::AgentReleases
