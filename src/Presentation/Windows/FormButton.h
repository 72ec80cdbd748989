#pragma once

#include <QPushButton>

namespace morvane {

/// A flat button of the program's windows, with a ring while it has the focus.
class FormButton : public QPushButton {
    Q_OBJECT

public:
    enum class Role {
        ordinary,
        primary,    ///< takes the next step
        destructive ///< can't be undone
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
