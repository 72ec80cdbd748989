#pragma once

#include <QAbstractButton>

namespace morvane {

/// The base of what can be pressed in the panel, by the pointer or, while the panel has the
/// keyboard, by the keys. A click doesn't take the focus: only the keys move it.
class PanelButton : public QAbstractButton {
    Q_OBJECT

protected:
    explicit PanelButton(QWidget *parent);

    /// Draws the focus ring while the button has the focus. Subclasses call it at the end of
    /// painting.
    void paintFocus(QPainter &painter, double radius) const;

    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
};

} // namespace morvane
