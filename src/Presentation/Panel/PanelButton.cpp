#include "Presentation/Panel/PanelButton.h"

#include "Presentation/Style/FocusRing.h"

#include <QKeyEvent>

namespace morvane {

namespace {

bool presses(const QKeyEvent &event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
           event.key() == Qt::Key_Space;
}

/// Return does what Space does: it presses once it is let go, and not if it was held from before.
/// Where the keyboard goes to a terminal with that, a Return that is still held would be typed
/// there.
QKeyEvent asSpace(const QKeyEvent &event) {
    return {event.type(), Qt::Key_Space, event.modifiers(), {}, event.isAutoRepeat()};
}

} // namespace

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
    if (presses(*event)) {
        QKeyEvent space = asSpace(*event);
        QAbstractButton::keyPressEvent(&space);
    } else {
        event->ignore();
    }
}

void PanelButton::keyReleaseEvent(QKeyEvent *event) {
    if (presses(*event)) {
        QKeyEvent space = asSpace(*event);
        QAbstractButton::keyReleaseEvent(&space);
    } else {
        event->ignore();
    }
}

} // namespace morvane

#include "moc_PanelButton.cpp"
