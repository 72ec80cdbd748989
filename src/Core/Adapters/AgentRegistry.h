#pragma once

#include "Core/Agents/AgentKind.h"

#include <span>
#include <vector>

namespace morvane {
class AgentAdapter;
}

/// The table of agents. Safe from any thread.
namespace morvane::AgentRegistry {

/// One adapter for each kind, in the order in which people see them.
std::span<const AgentAdapter *const> all();

const AgentAdapter &adapter(AgentKind kind);

/// The adapters whose agent has left traces on this machine, in order. Reads directories.
std::vector<const AgentAdapter *> present();

} // namespace morvane::AgentRegistry
