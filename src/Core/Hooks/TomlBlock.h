#pragma once

#include "Platform/Result.h"

#include <QByteArray>

#include <optional>

namespace morvane {
class HookPlan;
}

/// Our block in a TOML settings file, found by its first and last line: pure functions over the
/// file's bytes. The file is written by its owner, so every other byte stays as it is, except line
/// feeds at the end, and entries outside the block that call our script, which a program that drops
/// comments has left there. Safe from any thread.
namespace morvane::TomlBlock {

extern const QByteArray tomlBeginMarker;

/// The block with the plan's hooks, with a line feed at its end.
QByteArray tomlBlock(const HookPlan &plan);

/// The block as it stands in the text, without a line feed at its end; none without both markers.
std::optional<QByteArray> installedTOMLBlock(const QByteArray &text);

/// Whether there is anything of ours, even just the beginning of a block.
bool isInstalled(const QByteArray &text);

/// Whether `install` has something to mend.
bool isStale(const QByteArray &text, const HookPlan &plan);

/// The text with our block at its end, in place of any that it has. An empty list of hooks, to
/// which ours couldn't be added, becomes a comment until `uninstall`. Fails where the result
/// wouldn't be valid TOML with everything that was there before.
Result<QByteArray> install(const QByteArray &text, const HookPlan &plan);

/// The text without anything of ours.
QByteArray uninstall(const QByteArray &text);

} // namespace morvane::TomlBlock
