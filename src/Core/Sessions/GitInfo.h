#pragma once

#include <QString>

#include <optional>

/// Finds out the branch of a working directory by reading a few small files, without running git.
/// Stateless; safe from any thread.
namespace morvane::GitInfo {

/// The branch checked out in the nearest repository, which is searched for in 25 levels, from the
/// directory upwards; for a detached head the first 7 characters of its commit. A linked worktree
/// or a submodule names its repository by a path, which is used as it stands: one that is relative
/// to the folder isn't resolved.
std::optional<QString> branch(const QString &cwd);

} // namespace morvane::GitInfo
