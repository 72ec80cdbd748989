#pragma once

#include "Platform/Result.h"

#include <QByteArray>

#include <optional>

namespace morvane {
class HookPlan;
}

/// Our block in a TOML settings file, found by its first and last line: pure functions over the
/// file's bytes. The file is its owner's handwriting, so every other byte stays as it is, but for
/// line feeds at the file's end, and for entries that call our script outside the block, which a
/// program that drops comments has left there. Safe from any thread.
namespace morvane::TomlBlock {

extern const QByteArray tomlBeginMarker;

/// The block with the plan's hooks, with a line feed at its end.
QByteArray tomlBlock(const HookPlan &plan);

/// The block as it stands in the text, without a line feed at its end; none without both markers.
std::optional<QByteArray> installedTOMLBlock(const QByteArray &text);

/// Whether there is anything of ours, be it the beginning of a block.
bool isInstalled(const QByteArray &text);

/// Whether `install` has something to mend.
bool isStale(const QByteArray &text, const HookPlan &plan);

/// The text with the block behind everything else, in place of any that it has. An empty list of
/// hooks, which would close the list to ours, becomes a comment until `uninstall`. Fails where no
/// valid TOML with all that was there before can be made of it.
Result<QByteArray> install(const QByteArray &text, const HookPlan &plan);

/// The text without anything of ours.
QByteArray uninstall(const QByteArray &text);

} // namespace morvane::TomlBlock
