#pragma once

#include "Presentation/Style/Colors.h"

#include <QRectF>

class QPainter;
class QWidget;

namespace morvane {

/// Shows a person who works with the keys what they act on: a ring just within the frame.
void paintFocusRing(QPainter &painter, const QRectF &frame, double radius,
                    const QColor &color = Colors::focusRing);

/// Whether the keys act on the widget or on something in it.
bool containsFocus(const QWidget &widget);

} // namespace morvane
