#pragma once

#include "Platform/HotKey.h"

#include <QString>

#include <optional>

/// The key that opens the panel, which a person may choose: which keys will do, and how one is
/// stored.
namespace morvane::PanelKey {

enum class Fault {
    needsModifier, ///< it would be gone from whatever is typed
    isDigit,       ///< the open panel has it for its answers
    isNoKey,       ///< no keyboard sends it, or it has no name
};

/// The one that is used until another is chosen.
HotKey usual();

constexpr int digitCount = 5;

/// One of the keys that work while the panel is open, from 0.
HotKey ofDigit(int index);

/// The one that closes the panel.
HotKey escape();

/// Why this key can't open the panel; none when it can.
std::optional<Fault> fault(const HotKey &key);

/// As stored: "Super+Shift+34:G", which is the place on the keyboard and what was on it.
QString rawValue(const HotKey &key);

/// None for anything else than a key that can open the panel.
std::optional<HotKey> panelKey(const QString &rawValue);

} // namespace morvane::PanelKey
