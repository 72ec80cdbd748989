#pragma once

#include <QByteArray>

#include <optional>

namespace morvane {
class HookPlan;
}

/// Our block in a TOML settings file, found by its first and last line: pure functions over the
/// file's bytes. The file is its owner's handwriting, so every other byte stays as it is, but for
/// line feeds at the file's end. Safe from any thread.
namespace morvane::TomlBlock {

extern const QByteArray tomlBeginMarker;

/// The block with the plan's hooks, with a line feed at its end.
QByteArray tomlBlock(const HookPlan &plan);

/// The block as it stands in the text, without a line feed at its end; none without both markers.
std::optional<QByteArray> installedTOMLBlock(const QByteArray &text);

/// The text with the block behind everything else, in place of any that it has.
QByteArray install(const QByteArray &text, const HookPlan &plan);

/// The text without the block.
QByteArray uninstall(const QByteArray &text);

} // namespace morvane::TomlBlock
