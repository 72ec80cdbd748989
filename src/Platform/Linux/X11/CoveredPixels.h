#pragma once

#include <QList>
#include <QRect>

class QPainterPath;

namespace morvane {

/// The device pixels of which a path covers at least half, as rectangles that don't overlap: the
/// closest approximation of a curve by whole pixels.
QList<QRect> coveredPixels(const QPainterPath &path, double devicePixelRatio);

} // namespace morvane
