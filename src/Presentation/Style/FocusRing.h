#pragma once

#include "Presentation/Style/Colors.h"

#include <QRectF>

class QPainter;
class QWidget;

namespace morvane {

/// Marks what has the keyboard focus with a ring just inside the frame.
void paintFocusRing(QPainter &painter, const QRectF &frame, double radius,
                    const QColor &color = Colors::focusRing);

/// Whether the widget or something in it has the keyboard focus.
bool containsFocus(const QWidget &widget);

} // namespace morvane
