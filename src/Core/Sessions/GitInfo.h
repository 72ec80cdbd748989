#pragma once

#include <QString>

#include <optional>

/// Reads what a working directory's repository says of itself. Reads a few small files, without
/// running git. Stateless; safe from any thread.
namespace morvane::GitInfo {

/// The branch checked out in the directory, or in the nearest of the 25 levels from it upwards
/// that holds a repository; for a detached head the first 7 characters of its commit. The path
/// by which a linked worktree or a submodule names its repository is taken as it stands: one that
/// is relative to the folder isn't resolved.
std::optional<QString> branch(const QString &cwd);

} // namespace morvane::GitInfo
