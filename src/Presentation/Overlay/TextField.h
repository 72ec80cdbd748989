#pragma once

#include "Presentation/Style/KeyStroke.h"

#include <QLineEdit>

namespace morvane {

/// A line that a person types in, which Return or Escape ends. What an input method is still
/// composing counts as typed: not every one of them ends that when it is asked to, or when the
/// field loses the keyboard.
class TextField : public QLineEdit {
    Q_OBJECT

public:
    TextField(const QString &text, QWidget *parent);

    /// The text with what is being composed in it.
    QString typedText() const;

    /// Empties it of both.
    void discard();

signals:
    /// A person has changed what is typed.
    void typed();
    void returnTyped();
    void escapeTyped();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    KeyStroke m_stroke;
    QString m_composition;
};

} // namespace morvane
