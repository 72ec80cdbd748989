#pragma once

#include "Core/Sessions/SessionState.h"

#include <QIcon>
#include <QImage>

#include <optional>

class QColor;

/// The mascot's larger relative, the picture of the status item.
namespace morvane::MenuBarIcon {

/// The picture in one colour on nothing, 20.9 by 15.2 points, at so many pixels to the point.
QImage draw(const QColor &color, double scale = 1);

/// The picture with the mark of the state in its lower right corner, in a square, at the sizes that
/// panels ask for, whole pixels wherever it is drawn.
QIcon icon(const QColor &color, std::optional<SessionState> state);

} // namespace morvane::MenuBarIcon
