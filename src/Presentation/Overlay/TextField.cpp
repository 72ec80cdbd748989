#include "Presentation/Overlay/TextField.h"

namespace morvane {

namespace {

bool endsField(const QKeyEvent &event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
           event.key() == Qt::Key_Escape;
}

} // namespace

void TextField::keyPressEvent(QKeyEvent *event) {
    if (endsField(*event)) {
        m_stroke.begin(*event);
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void TextField::keyReleaseEvent(QKeyEvent *event) {
    if (!m_stroke.isEndedBy(*event)) {
        QLineEdit::keyReleaseEvent(event);
    } else if (event->key() == Qt::Key_Escape) {
        emit escapeTyped();
    } else {
        emit returnTyped();
    }
}

void TextField::focusOutEvent(QFocusEvent *event) {
    m_stroke.abandon();
    QLineEdit::focusOutEvent(event);
}

} // namespace morvane

#include "moc_TextField.cpp"
