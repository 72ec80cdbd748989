#include "Presentation/Panel/PanelButton.h"

#include "Presentation/Style/ButtonKeys.h"
#include "Presentation/Style/FocusRing.h"

#include <QMouseEvent>

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

/// The second press of a double click wasn't meant for what the first one has brought up.
void PanelButton::mouseDoubleClickEvent(QMouseEvent *event) {
    event->accept();
}

/// A press that has ended early doesn't resume while the pointer is held down: the button may stand
/// for something else by then.
void PanelButton::mouseMoveEvent(QMouseEvent *event) {
    if (isDown()) {
        QAbstractButton::mouseMoveEvent(event);
    } else {
        event->ignore();
    }
}

/// Leaves the arrow keys to the panel, which knows what lies beside what.
void PanelButton::keyPressEvent(QKeyEvent *event) {
    if (auto space = ButtonKeys::asSpace(*event)) {
        QAbstractButton::keyPressEvent(&*space);
    } else {
        event->ignore();
    }
}

void PanelButton::keyReleaseEvent(QKeyEvent *event) {
    if (auto space = ButtonKeys::asSpace(*event)) {
        QAbstractButton::keyReleaseEvent(&*space);
    } else {
        event->ignore();
    }
}

} // namespace morvane

#include "moc_PanelButton.cpp"
