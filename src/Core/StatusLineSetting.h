#pragma once

#include "Core/StatusLineFeed.h"
#include "Core/StatusLineHealth.h"

#include <nlohmann/json_fwd.hpp>

/// The status line in an agent's JSON settings: pure functions over the file's root, which must be
/// an object. It belongs to whoever set it first; another tool's is neither replaced nor called.
/// Safe from any thread.
namespace morvane::StatusLineSetting {

/// A part of the command by which it is known to be ours, whatever home folder it is from.
constexpr char statusLineScriptMarker[] = ".morvane/statusline.sh";

bool isMorvaneStatusLine(const nlohmann::json &value);

/// True when there is no status line, or one of ours that names another place.
bool needsRepair(const nlohmann::json &root, const StatusLineFeed &feed);

/// Sets our status line, unless another tool's is there.
void install(nlohmann::json &root, const StatusLineFeed &feed);

/// Takes our status line out, and no other.
void uninstall(nlohmann::json &root, const StatusLineFeed &feed);

/// `scriptExecutable` says whether our script can be run.
StatusLineHealth health(const nlohmann::json &root, const StatusLineFeed &feed,
                        bool scriptExecutable);

} // namespace morvane::StatusLineSetting
