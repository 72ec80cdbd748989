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

/// The second press of a double click was not meant for what the first has brought here.
void PanelButton::mouseDoubleClickEvent(QMouseEvent *event) {
    event->accept();
}

/// A press that is over doesn't come back while the pointer is held down: the button may stand for
/// something else by then.
void PanelButton::mouseMoveEvent(QMouseEvent *event) {
    if (isDown()) {
        QAbstractButton::mouseMoveEvent(event);
    } else {
        event->ignore();
    }
}

/// The arrows are the panel's, which knows what lies beside what.
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
