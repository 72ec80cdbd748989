#include "Presentation/Overlay/TextField.h"

#include <utility>

namespace morvane {

namespace {

bool endsField(const QKeyEvent &event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
           event.key() == Qt::Key_Escape;
}

} // namespace

TextField::TextField(const QString &text, QWidget *parent) : QLineEdit(text, parent) {
    connect(this, &TextField::textEdited, this, &TextField::typed);
    // QLineEdit drops the composition when the cursor moves, and signals only the move.
    const auto forget = [this] { m_composition.clear(); };
    connect(this, &TextField::cursorPositionChanged, this, forget);
    connect(this, &TextField::selectionChanged, this, forget);
}

QString TextField::typedText() const {
    return text().insert(cursorPosition(), m_composition);
}

void TextField::discard() {
    m_composition.clear();
    clear();
}

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

void TextField::inputMethodEvent(QInputMethodEvent *event) {
    const QString composed = event->preeditString();
    const QString before = std::exchange(m_composition, composed);
    QLineEdit::inputMethodEvent(event);
    m_composition = composed; // the event may have moved the cursor, which clears it
    if (m_composition != before) {
        emit typed();
    }
}

} // namespace morvane

#include "moc_TextField.cpp"
