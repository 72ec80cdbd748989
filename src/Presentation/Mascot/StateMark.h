#pragma once

#include "Core/Sessions/SessionState.h"

#include <QPainterPath>
#include <QStringList>

#include <optional>

/// A sign that identifies a state by its shape alone: an exclamation mark for needed input, a cross
/// for a failure, a tick for done. Pure functions.
namespace morvane::StateMark {

/// The number of squares along each side of a sign.
inline constexpr int side = 5;

/// The rows of the sign, with "X" for a filled square; none for a state without a sign.
QStringList rows(std::optional<SessionState> state);

/// All squares of such rows as one shape, each one unit wide. A single shape leaves no seam where
/// two squares share a pixel.
QPainterPath shape(const QStringList &rows);

} // namespace morvane::StateMark
