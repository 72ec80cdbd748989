#pragma once

#include "Core/Sessions/SessionState.h"

#include <QPainterPath>
#include <QStringList>

#include <optional>

/// The sign that tells apart by its shape alone what calls for a person: an exclamation mark where
/// one is asked, a cross where something failed, a tick where it is done. Pure functions.
namespace morvane::StateMark {

/// How many squares each sign has on either side.
inline constexpr int side = 5;

/// Its squares, a row a line, "X" for one that is full; none for a state that asks for nothing.
QStringList rows(std::optional<SessionState> state);

/// All squares of such rows as one shape, a square one unit wide, so that there is no seam between
/// two that share a pixel.
QPainterPath shape(const QStringList &rows);

} // namespace morvane::StateMark
