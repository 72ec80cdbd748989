#pragma once

#include "Core/Agents/AgentKind.h"
#include "Core/Agents/AgentRelease.h"

#include <optional>
#include <span>
#include <vector>

namespace morvane {
class AgentAdapter;
}

/// The table of agents. Safe from any thread.
namespace morvane::AgentRegistry {

/// One adapter for each kind, in the order in which people see them: the adapter for releases that
/// aren't known to differ.
std::span<const AgentAdapter *const> all();

const AgentAdapter &adapter(AgentKind kind);

/// The adapter for this release of the agent; that of `all` for an unknown or unlisted release.
/// This is the one place where a release makes a difference.
const AgentAdapter &adapter(AgentKind kind, std::optional<AgentRelease> release);

/// Every adapter of the kind, that of `all` first.
std::vector<const AgentAdapter *> forms(AgentKind kind);

/// The adapters whose agent has left traces on this machine, in order. Reads directories.
std::vector<const AgentAdapter *> present();

} // namespace morvane::AgentRegistry
