#pragma once

#include "Core/Sessions/SessionState.h"

#include <QIcon>
#include <QImage>

#include <optional>

class QColor;

/// The picture of the status item, a larger relative of the mascot.
namespace morvane::MenuBarIcon {

/// The picture in one colour on a transparent ground, 20.9 by 15.2 points, at `scale` pixels to the
/// point.
QImage draw(const QColor &color, double scale = 1);

/// A square icon: the picture with the state's mark in its lower right corner, at the sizes that
/// desktop panels ask for, with a whole number of pixels to each square of the design.
QIcon icon(const QColor &color, std::optional<SessionState> state);

} // namespace morvane::MenuBarIcon
