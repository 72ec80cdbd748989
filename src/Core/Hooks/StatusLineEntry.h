#pragma once

#include "Core/Agents/AgentIntegration.h"
#include "Core/Hooks/Health.h"

#include <nlohmann/json_fwd.hpp>

/// The status line in an agent's JSON settings: pure functions over the file's root, which must be
/// an object. It belongs to whoever set it first; another tool's is neither replaced nor called.
/// Safe from any thread.
namespace morvane::StatusLineEntry {

/// True when there is no status line, an empty one, or one of ours with another path. An empty one
/// still belongs to somebody, so `install` leaves it.
bool needsRepair(const nlohmann::json &root, const StatusLineFeed &feed);

/// Whether there is a status line of ours, wherever it points.
bool isInstalled(const nlohmann::json &root, const StatusLineFeed &feed);

/// Sets our status line, unless the key holds anything that isn't ours, even null.
void install(nlohmann::json &root, const StatusLineFeed &feed);

/// Takes our status line out, and no other.
void uninstall(nlohmann::json &root, const StatusLineFeed &feed);

/// `scriptExecutable` says whether our script can be run.
StatusLineHealth health(const nlohmann::json &root, const StatusLineFeed &feed,
                        bool scriptExecutable);

} // namespace morvane::StatusLineEntry
