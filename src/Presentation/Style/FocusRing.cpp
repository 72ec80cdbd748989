#include "Presentation/Style/FocusRing.h"

#include <QApplication>
#include <QPainter>

namespace morvane {

namespace {

constexpr double ringThickness = 1.5;

} // namespace

void paintFocusRing(QPainter &painter, const QRectF &frame, double radius, const QColor &color) {
    const double inset = ringThickness / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, ringThickness));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame.adjusted(inset, inset, -inset, -inset), radius - inset,
                            radius - inset);
}

bool containsFocus(const QWidget &widget) {
    const QWidget *focus = QApplication::focusWidget();
    return focus == &widget || widget.isAncestorOf(focus);
}

} // namespace morvane
