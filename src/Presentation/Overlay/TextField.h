#pragma once

#include "Presentation/Style/KeyStroke.h"

#include <QLineEdit>

namespace morvane {

/// A line edit that Return or Escape ends. Text that an input method is still composing counts as
/// typed: not every input method commits it on request, or when the field loses the keyboard.
class TextField : public QLineEdit {
    Q_OBJECT

public:
    TextField(const QString &text, QWidget *parent);

    /// The text, including what is being composed.
    QString typedText() const;

    /// Clears the text and the composition.
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
