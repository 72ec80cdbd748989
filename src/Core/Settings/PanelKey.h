#pragma once

#include "Platform/HotKey.h"

#include <QString>

#include <optional>

/// The key that opens the panel, which a person may choose: which keys will do, and how one is
/// stored.
namespace morvane::PanelKey {

enum class Fault {
    needsModifier, ///< it could no longer be typed anywhere
    isDigit,       ///< the open panel uses it for its answers
    isNoKey,       ///< no keyboard sends it, or it has no name
};

/// The key that is used until another is chosen.
HotKey usual();

constexpr int digitCount = 5;

/// A digit key that works while the panel is open; the index counts from 0.
HotKey ofDigit(int index);

/// The key that closes the panel.
HotKey escape();

/// Why this key can't open the panel; none when it can.
std::optional<Fault> fault(const HotKey &key);

/// As stored: "Super+Shift+34:G", with the key's place on the keyboard and the symbol on it.
QString rawValue(const HotKey &key);

/// Parses a stored key; none unless it can open the panel.
std::optional<HotKey> panelKey(const QString &rawValue);

} // namespace morvane::PanelKey
