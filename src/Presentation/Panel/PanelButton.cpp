#include "Presentation/Panel/PanelButton.h"

#include "Presentation/Style/FocusRing.h"

#include <QKeyEvent>

namespace morvane {

PanelButton::PanelButton(QWidget *parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void PanelButton::paintFocus(QPainter &painter, double radius) const {
    if (hasFocus()) {
        paintFocusRing(painter, rect(), radius);
    }
}

/// The arrows are the panel's, which knows what lies beside what.
void PanelButton::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // A key that is still held from before presses nothing.
        if (!event->isAutoRepeat()) {
            click();
        }
        break;
    case Qt::Key_Space:
        QAbstractButton::keyPressEvent(event);
        break;
    default:
        event->ignore();
    }
}

} // namespace morvane

#include "moc_PanelButton.cpp"
