#pragma once

#include "Presentation/Overlay/KeyStroke.h"

#include <QLineEdit>

namespace morvane {

/// A line that a person types in, which Return or Escape ends.
class TextField : public QLineEdit {
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

signals:
    void returnTyped();
    void escapeTyped();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    KeyStroke m_stroke;
};

} // namespace morvane
