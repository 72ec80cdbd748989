#pragma once

#include <QList>
#include <QRect>

class QPainterPath;

namespace morvane {

/// The device pixels of which a path covers at least half, as rectangles that don't overlap: what a
/// curve comes closest to where a pixel can only be there or not.
QList<QRect> coveredPixels(const QPainterPath &path, double devicePixelRatio);

} // namespace morvane
