#pragma once

#include <QPushButton>

namespace morvane {

/// A button of the program's windows: flat, and at the keyboard's place with a ring.
class FormButton : public QPushButton {
    Q_OBJECT

public:
    enum class Role {
        ordinary,
        primary,    ///< what goes on
        destructive ///< what can't be taken back
    };

    FormButton(const QString &text, Role role, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QColor ground() const;

    Role m_role;
};

} // namespace morvane
