#pragma once

#include "Core/Agents/AgentContract.h"
#include "Core/Agents/AgentKind.h"
#include "Core/Agents/AgentRelease.h"

#include <QString>

#include <optional>
#include <span>

/// The releases of agents that are known to differ from the first contract. Only running a release
/// shows whether it belongs here. Safe from any thread.
namespace morvane::AgentReleases {

/// A range of releases: from the first that was tried up to the next major number, from which on
/// nothing is known of the agent's behaviour.
struct Listed {
    AgentKind agent;
    AgentRelease from;
    AgentContract contract;
};

std::span<const Listed> all();

/// The names by which an agent's installed release is found.
struct Program {
    QString command; ///< what a person types
    QString package; ///< of npm; those for a single platform append a "-" and more
};

/// None for an agent without a release in the table, whose program needn't be found.
std::optional<Program> program(AgentKind agent);

} // namespace morvane::AgentReleases
